import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.Layouts 1.15
import backend 1.0

// The large display: the same sample as the graph page, without the chart, with the
// pressure as large as the width allows.
Item {
    id: page

    property string lineColor: "#E63219"

    readonly property int basePixelSize: refText.fontInfo.pixelSize
    readonly property bool darkTheme: Material.theme === Material.Dark

    // The system's default font size rules the page.
    Text {
        id: refText
        visible: false
        text: "X"
        Component.onCompleted: if (Qt.platform.os === "windows") font.pixelSize = 20
    }

    // Any value outside the classes keeps the arrow on show.
    function showTrend(trend) {
        switch (trend) {
        case -10:
            imgTrend.source = "qrc:/Images/Trend_None~universal.png"
            break
        case 1:
        case -1:
            imgTrend.source = "qrc:/Images/Trend_Steady~universal.png"
            break
        case 2:
            imgTrend.source = "qrc:/Images/Trend_Rising~universal.png"
            break
        case 3:
            imgTrend.source = "qrc:/Images/Trend_Rising Fast~universal.png"
            break
        case 4:
            imgTrend.source = "qrc:/Images/Trend_Rising Very Fast~universal.png"
            break
        case -2:
            imgTrend.source = "qrc:/Images/Trend_Falling~universal.png"
            break
        case -3:
            imgTrend.source = "qrc:/Images/Trend_Falling Fast~universal.png"
            break
        case -4:
            imgTrend.source = "qrc:/Images/Trend_Falling Very Fast~universal.png"
            break
        default:
            break
        }
    }

    Connections {
        target: backend

        function onDataUpdated(date, position, cogsog, pressure) {
            textDate.text = date

            // Unlike the graph page, position and course always take two lines here.
            if (position === "No Position") {
                textPos.visible = false
            } else {
                textPos.visible = true
                textPos.text = cogsog === "no" ? position : position + "\n" + cogsog
            }

            if (pressure === "NONE") {
                rowPressure.visible = false
            } else {
                rowPressure.visible = true
                textPressure.text = pressure
                textPreLevel.text = backend.getSetting("preDisplay", 0) === 0 ? qsTr("Sea Level Pressure (QNH)")
                                                                              : qsTr("Station Level Pressure (QFE)")
            }

            // Also without pressure: the row that holds the arrow is hidden then anyway.
            showTrend(dataSource.getTrend())
        }

        function onNoPressureAvailable() {
            textPreLevel.text = qsTr("No pressure data available")
            textPreLevel.visible = true
        }
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 0
        spacing: 0

        Image {
            id: imgQuillmere
            objectName: "imgQuillmere"
            source: "qrc:/Images/USB_banner.png"
            Layout.preferredWidth: window.width
            Layout.preferredHeight: window.width * 218 / 1800
            fillMode: Image.PreserveAspectFit
            verticalAlignment: Image.AlignTop
            smooth: true
            mipmap: true
            clip: true

            MouseArea {
                objectName: "makerLink"
                x: 0
                width: parent.width * 800 / 1800
                height: parent.height
                cursorShape: Qt.PointingHandCursor
                onClicked: Qt.openUrlExternally("https://www.quillmere.com/")
            }
            MouseArea {
                objectName: "deviceLink"
                x: parent.width - width
                width: parent.width * 485 / 1800
                height: parent.height
                cursorShape: Qt.PointingHandCursor
                onClicked: Qt.openUrlExternally("https://www.quillmere.com/skerry")
            }
        }

        WarningStrip {
            objectName: "warningStrip"
            Layout.fillWidth: true
            Layout.margins: visible ? 4 : 0
            warning: typeof dataSource !== "undefined" && dataSource ? dataSource.warning : null
        }

        Item {
            objectName: "topSpacer"
            Layout.fillWidth: true
            Layout.fillHeight: true
        }

        Text {
            id: textDate
            objectName: "textDate"
            Layout.fillWidth: true
            text: ""
            font.bold: false
            font.pixelSize: page.basePixelSize * 1.5
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 1
            color: lineColor
            horizontalAlignment: Text.AlignHCenter
        }

        Text {
            id: textPos
            objectName: "textPos"
            Layout.fillWidth: true
            visible: false
            font.bold: true
            font.pixelSize: page.basePixelSize * 2
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 1
            color: darkTheme ? "yellow" : "blue"
            horizontalAlignment: Text.AlignHCenter
        }

        Text {
            id: textPreLevel
            objectName: "textPreLevel"
            Layout.fillWidth: true
            text: qsTr("Sea Level Pressure (QNH)")
            font.bold: true
            font.pixelSize: page.basePixelSize * 1.5
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 1
            color: lineColor
            horizontalAlignment: Text.AlignHCenter

            MouseArea {
                id: levelArea
                objectName: "levelArea"
                anchors.fill: parent
                hoverEnabled: true
                acceptedButtons: Qt.NoButton
                property string source: ""
                // Asked at each showing: the winning source can change at any tick.
                onContainsMouseChanged: if (containsMouse) source = backend.getPressureSource()
                ToolTip.visible: containsMouse
                ToolTip.text: source
            }
        }

        RowLayout {
            id: rowPressure
            objectName: "rowPressure"
            Layout.preferredWidth: window.width
            Layout.alignment: Qt.AlignHCenter
            spacing: 0

            Text {
                id: textPressure
                objectName: "textPressure"
                Layout.fillWidth: true
                Layout.leftMargin: 10
                // Sized to its content: the pixel size of 1000 is only the ceiling of the fit, and
                // an empty text, before the first sample, would otherwise keep the full line.
                Layout.maximumHeight: text === "" ? 0 : contentHeight
                text: ""
                font.bold: true
                font.pixelSize: 1000
                fontSizeMode: Text.HorizontalFit
                minimumPixelSize: 1
                color: lineColor
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
            }
            Image {
                id: imgTrend
                objectName: "imgTrend"
                source: "qrc:/Images/Trend_None~universal.png"
                Layout.preferredWidth: textPressure.font.pixelSize
                Layout.preferredHeight: textPressure.font.pixelSize
                Layout.maximumWidth: baroH.width / 5
                Layout.maximumHeight: baroH.width / 5
                Layout.rightMargin: 10
                sourceSize.width: 256
                sourceSize.height: 256
                fillMode: Image.PreserveAspectFit
                smooth: true
                mipmap: true
            }
        }

        Item {
            objectName: "bottomSpacer"
            Layout.fillWidth: true
            Layout.fillHeight: true
        }
    }
}
