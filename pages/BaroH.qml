// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.Layouts 1.15
import QtCharts 2.15
import backend 1.0

// The graph page: date, position, the pressure with its trend arrow, the range buttons and
// the chart with its reading cursor. It keeps no data: everything comes from the two
// signals and from dataSource.
Item {
    id: page

    // The window's size, which the banner and the position's line break follow.
    property real layoutWidth: width
    property real layoutHeight: height

    property alias chartNb: chartPressure.chartNb
    property alias startingDate: chartPressure.startingDate
    property alias m_point: chartPressure.m_point
    property alias lastStartTime: chartPressure.lastStartTime
    property alias paning: chartPressure.paning
    property alias zoomLevel: chartPressure.zoomLevel
    property string lineColor: Theme.lineColor

    readonly property int basePixelSize: Theme.basePixelSize
    readonly property bool darkTheme: Material.theme === Material.Dark

    TextMetrics {
        id: fiftyX
        font.family: Theme.fontFamily
        font.pixelSize: page.basePixelSize
        font.bold: true
        text: "XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX"
    }
    TextMetrics {
        id: pressureMetrics
        font.family: Theme.fontFamily
        font.pixelSize: page.basePixelSize
        font.bold: true
        text: textPressure.text
    }
    TextMetrics {
        id: wwww
        font.family: Theme.fontFamily
        font.pixelSize: page.basePixelSize
        font.bold: true
        text: qsTr("WWWW")
    }

    function textDateVisible() {
        return Theme.hasBackend()
    }

    // Called by BaroSwipe when the slot changes; on the desktop nothing follows from it.
    function swipeIndexChanged(currentIndex) {
    }

    function isZoomed() {
        return chartPressure.isZoomed()
    }

    function showRange(nb, min, format, ticks, minorTicks) {
        chartPressure.showRange(nb, min, format, ticks, minorTicks)
    }

    function showTrend(trend) {
        imgTrend.showTrend(trend)
    }

    function serieClicked(point, recreation) {
        chartPressure.serieClicked(point, recreation)
    }

    Connections {
        target: backend

        function onDataUpdated(date, position, cogsog, pressure) {
            chartPressure.colourCurve()
            textDate.text = date

            if (position === "No Position") {
                textPos.visible = false
            } else {
                textPos.visible = true
                if (cogsog === "no")
                    textPos.text = position
                else if (page.layoutHeight > page.layoutWidth)
                    textPos.text = position + "\n" + cogsog
                else
                    textPos.text = position + " " + cogsog
            }

            if (pressure === "NONE") {
                chartPressure.title = ""
                rowPressure.visible = false
            } else {
                rowPressure.visible = true
                textPressure.text = pressure
                if (!chartPressure.cursorTextShown)
                    chartPressure.title = rowPressure.visible ? "" : pressure
            }

            if (pressure !== "NONE")
                textPreLevel.text = backend.getSetting("preDisplay", 0) === 0 ? qsTr("Sea Level Pressure (QNH)")
                                                                              : qsTr("Station Level Pressure (QFE)")

            // A zoomed or dragged chart holds still until it is reset.
            if (!isZoomed() && !paning)
                dataSource.updateChart(chartNb)

            if (pressure === "NONE") {
                imgTrend.visible = false
            } else {
                imgTrend.visible = true
                showTrend(dataSource.getTrend())
            }
        }

        function onNoPressureAvailable() {
            textPreLevel.text = qsTr("No pressure data available")
            textPreLevel.visible = true
        }
    }

    ColumnLayout {
        anchors.fill: parent
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

        Text {
            id: textDate
            objectName: "textDate"
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: 20
            visible: textDateVisible()
            font.bold: false
            font.pixelSize: page.basePixelSize
            color: lineColor
            horizontalAlignment: Text.AlignHCenter
        }

        Text {
            id: textPos
            objectName: "textPos"
            Layout.alignment: Qt.AlignHCenter
            visible: false
            font.bold: true
            font.pixelSize: Math.max(1, page.basePixelSize * 0.6 * page.width / Math.max(1, fiftyX.width))
            color: Theme.positionColor(darkTheme)
            horizontalAlignment: Text.AlignHCenter
        }

        LevelCaption {
            id: textPreLevel
            Layout.alignment: Qt.AlignHCenter
            visible: textDateVisible()
            text: qsTr("Sea Level Pressure (QNH)")
            font.pixelSize: page.basePixelSize * 1.1
            color: lineColor
        }

        RowLayout {
            id: rowPressure
            objectName: "rowPressure"
            Layout.fillWidth: true
            visible: textDateVisible()
            spacing: 10

            Item {
                Layout.fillWidth: true
            }
            Text {
                id: textPressure
                objectName: "textPressure"
                text: "1020 hPa"
                font.bold: true
                font.pixelSize: {
                    var share = page.height > page.width ? 0.6 : 0.3
                    if (pressureMetrics.width <= 0)
                        return page.basePixelSize
                    return Math.max(1, page.basePixelSize * share * page.width / pressureMetrics.width)
                }
                color: lineColor
            }
            TrendArrow {
                id: imgTrend
                Layout.preferredHeight: textPressure.height
                Layout.preferredWidth: textPressure.height
            }
            Item {
                Layout.fillWidth: true
            }
        }

        TendencyLine {
            objectName: "textTendency"
            Layout.fillWidth: true
            Layout.leftMargin: 10
            Layout.rightMargin: 10
            report: typeof dataSource !== "undefined" && dataSource ? dataSource.tendency : null
            pressureShown: rowPressure.visible
            wrapMode: Text.WordWrap
            font.pixelSize: page.basePixelSize
            color: lineColor
        }

        Rectangle {
            id: buttonBand
            objectName: "buttonBand"
            Layout.fillWidth: true
            Layout.preferredHeight: bandLayout.implicitHeight
            color: Material.background

            // The range buttons stay centred on the page. The barogram's button takes the
            // band's right end while there is room for it on both sides of them, so that
            // they stay centred, and a line of its own below them when there is not.
            GridLayout {
                id: bandLayout
                objectName: "bandLayout"
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.top: parent.top
                columns: besideRange ? 3 : 1
                columnSpacing: 0
                rowSpacing: 0

                readonly property real sideWidth: buttonBarogram.implicitWidth + 2 * barogramMargin
                readonly property real barogramMargin: 8
                readonly property bool besideRange: page.width - buttonRow.width * buttonRow.scale >= 2 * sideWidth

                // Balances the button's side.
                Item {
                    visible: bandLayout.besideRange
                    Layout.preferredWidth: bandLayout.sideWidth
                }
                Item {
                    Layout.fillWidth: true
                    Layout.preferredHeight: buttonRow.height * buttonRow.scale

                    Row {
                        id: buttonRow
                        objectName: "buttonRow"
                        anchors.centerIn: parent
                        scale: wwww.width * 8.5 > page.width ? page.width / (wwww.width * 8.5) : 1.0

                        // One button per table, in the log's order: its label, the axis' start in
                        // the axis' unit, the label format, the ticks and the minor ticks.
                        Repeater {
                            model: [
                                { name: "30m", label: QT_TR_NOOP("30m"), min: -30, format: QT_TR_NOOP("%dm"), ticks: 7, minor: 0 },
                                { name: "3h", label: QT_TR_NOOP("3h"), min: -3, format: QT_TR_NOOP("%dh"), ticks: 4, minor: 1 },
                                { name: "6h", label: QT_TR_NOOP("6h"), min: -6, format: QT_TR_NOOP("%dh"), ticks: 7, minor: 0 },
                                { name: "12h", label: QT_TR_NOOP("12h"), min: -12, format: QT_TR_NOOP("%dh"), ticks: 7, minor: 0 },
                                { name: "1d", label: QT_TR_NOOP("1d"), min: -24, format: QT_TR_NOOP("%dh"), ticks: 7, minor: 0 },
                                { name: "2d", label: QT_TR_NOOP("2d"), min: -48, format: QT_TR_NOOP("%dh"), ticks: 7, minor: 0 },
                                { name: "4d", label: QT_TR_NOOP("4d"), min: -4, format: QT_TR_NOOP("%dd"), ticks: 5, minor: 1 },
                                { name: "8d", label: QT_TR_NOOP("8d"), min: -8, format: QT_TR_NOOP("%dd"), ticks: 5, minor: 1 },
                                { name: "16d", label: QT_TR_NOOP("16d"), min: -16, format: QT_TR_NOOP("%dd"), ticks: 5, minor: 1 }
                            ]

                            M_ToolButton {
                                objectName: "button" + modelData.name
                                text: qsTr(modelData.label)
                                checked: index === 0
                                onClicked: showRange(index, modelData.min, qsTr(modelData.format), modelData.ticks, modelData.minor)
                            }
                        }
                    }
                }
                // The span on the chart as a barogram for the logbook, a PDF shown once written.
                Button {
                    id: buttonBarogram
                    objectName: "buttonBarogram"
                    Layout.alignment: Qt.AlignRight | Qt.AlignVCenter
                    Layout.leftMargin: bandLayout.barogramMargin
                    Layout.rightMargin: bandLayout.barogramMargin
                    text: qsTranslate("BaroH", "Barogram")
                    font.capitalization: Font.MixedCase
                    ToolTip.visible: hovered
                    ToolTip.text: qsTranslate("BaroH", "Save a barogram of this span")
                    Accessible.name: ToolTip.text
                    onClicked: dataSource.exportBarogram(page.chartNb)
                }
            }
        }

        PressureChart {
            id: chartPressure
            Layout.fillWidth: true
            Layout.fillHeight: true
            pageWidth: page.width
            titlePixelSize: textPreLevel.font.pixelSize
            pressureShown: rowPressure.visible
            xAxis: axisX
            yAxis: axisY
            anchorSeries: axisAnchor

            ValueAxis {
                id: axisY
                objectName: "axisY"
                min: 980
                max: 1050
                labelFormat: "%0.2f"
                tickCount: 6
            }
            ValueAxis {
                id: axisX
                objectName: "axisX"
                min: -30
                max: 0
                labelFormat: qsTr("%dm")
                tickCount: 7
            }
            // Only a series can bring an axis in at the right; this one does that and goes.
            LineSeries {
                id: axisAnchor
                axisX: axisX
                axisYRight: axisY
                visible: false
            }
        }
    }
}
