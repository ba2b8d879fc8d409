// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.Layouts 1.15
import backend 1.0

// The large display: the same sample as the graph page, without the chart, with the
// pressure as large as the width allows.
Item {
    id: page

    // The window's width, which the banner and the pressure's row span.
    property real layoutWidth: width
    property string lineColor: Theme.lineColor

    readonly property int basePixelSize: Theme.basePixelSize
    readonly property bool darkTheme: Material.theme === Material.Dark

    function showTrend(trend) {
        imgTrend.showTrend(trend)
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

        Banner {
            id: imgQuillmere
            layoutWidth: page.layoutWidth
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
            color: Theme.positionColor(darkTheme)
            horizontalAlignment: Text.AlignHCenter
        }

        LevelCaption {
            id: textPreLevel
            Layout.fillWidth: true
            text: qsTr("Sea Level Pressure (QNH)")
            font.pixelSize: page.basePixelSize * 1.5
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 1
            color: lineColor
        }

        RowLayout {
            id: rowPressure
            objectName: "rowPressure"
            Layout.preferredWidth: page.layoutWidth
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
            TrendArrow {
                id: imgTrend
                Layout.preferredWidth: textPressure.font.pixelSize
                Layout.preferredHeight: textPressure.font.pixelSize
                Layout.maximumWidth: page.width / 5
                Layout.maximumHeight: page.width / 5
                Layout.rightMargin: 10
            }
        }

        TendencyLine {
            objectName: "textTendency"
            Layout.fillWidth: true
            report: typeof dataSource !== "undefined" && dataSource ? dataSource.tendency : null
            pressureShown: rowPressure.visible
            font.pixelSize: page.basePixelSize * 1.5
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 1
            color: lineColor
        }

        ForecastLine {
            objectName: "textForecast"
            Layout.fillWidth: true
            Layout.topMargin: visible ? page.basePixelSize : 0
            report: typeof dataSource !== "undefined" && dataSource ? dataSource.tendency : null
            pressureShown: rowPressure.visible
            font.pixelSize: page.basePixelSize * 1.5
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 1
            color: Theme.positionColor(darkTheme)
        }

        Item {
            objectName: "bottomSpacer"
            Layout.fillWidth: true
            Layout.fillHeight: true
        }
    }
}
