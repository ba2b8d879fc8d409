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

    property int chartNb: 0
    property int startingDate: 0
    property var m_point
    property var lastStartTime
    property var lineSeries0
    property var lineHelper
    property bool paning: false
    property double zoomLevel: 1.0
    property string lineColor: "#E63219"
    property int lineWidth: 2

    // Only the first helper is dotted: one made again after a gap keeps the chart's style.
    property bool helperDotted: true

    readonly property int basePixelSize: refText.fontInfo.pixelSize
    readonly property bool darkTheme: Material.theme === Material.Dark

    onDarkThemeChanged: chartPressure.decorate()
    onWidthChanged: decorateAxes()

    // The system's default font size rules the page.
    Text {
        id: refText
        visible: false
        text: "X"
        Component.onCompleted: if (Qt.platform.os === "windows") font.pixelSize = 20
    }
    TextMetrics {
        id: fiftyX
        font.family: refText.font.family
        font.pixelSize: page.basePixelSize
        font.bold: true
        text: "XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX"
    }
    TextMetrics {
        id: pressureMetrics
        font.family: refText.font.family
        font.pixelSize: page.basePixelSize
        font.bold: true
        text: textPressure.text
    }
    TextMetrics {
        id: wwww
        font.family: refText.font.family
        font.pixelSize: page.basePixelSize
        font.bold: true
        text: qsTr("WWWW")
    }

    function textDateVisible() {
        return typeof backend !== "undefined" && backend !== null
    }

    // Called by BaroSwipe when the slot changes; on the desktop nothing follows from it.
    function swipeIndexChanged(currentIndex) {
    }

    function isZoomed() {
        return chartPressure.isZoomed()
    }

    function seriesType() {
        return backend.getSetting("SettingSplineLine", 1) === 0 ? ChartView.SeriesTypeLine
                                                               : ChartView.SeriesTypeSpline
    }

    // Seconds per unit of the x-axis: minutes, hours or days.
    function axisUnit() {
        if (chartNb === 0)
            return 60
        if (chartNb < 6)
            return 3600
        return 86400
    }

    // Every series hangs on the shared x-axis and on the y-axis at the right.
    function newSeries(type, name) {
        var series = chartPressure.createSeries(type, name, axisX, axisY)
        series.axisYRight = axisY
        series.useOpenGL = false
        return series
    }

    function newDataSeries(name) {
        var series = newSeries(seriesType(), name)
        series.color = lineColor
        series.width = lineWidth
        return series
    }

    function newHelper() {
        var helper = newSeries(ChartView.SeriesTypeLine, "lineHelper")
        helper.pointsVisible = true
        helper.visible = false
        return helper
    }

    function styleHelper() {
        lineHelper.style = Qt.DotLine
        lineHelper.color = darkTheme ? "white" : "black"
        lineHelper.width = lineWidth * 0.9
    }

    function dataSeriesCount() {
        return chartPressure.count - 1
    }

    function colourCurve() {
        for (var n = 0; n < dataSeriesCount(); n++)
            chartPressure.series(n).color = lineColor
    }

    function decorateAxes() {
        axisY.labelsFont = Qt.font({ "family": refText.font.family, "pixelSize": page.width < 350 ? 11 : 13,
                                     "bold": page.width > 350 })
        axisX.labelsFont = Qt.font({ "family": refText.font.family, "pixelSize": page.width < 350 ? 11 : 15,
                                     "bold": page.width > 350 })
    }

    function setTitleStyle() {
        chartPressure.titleColor = darkTheme ? "white" : "black"
        chartPressure.titleFont = Qt.font({ "family": refText.font.family, "pixelSize": textPreLevel.font.pixelSize,
                                            "bold": true })
    }

    // An empty title takes no room; while the pressure row is hidden a blank keeps it.
    function blankTitle() {
        chartPressure.title = rowPressure.visible ? "" : " "
    }

    function resetChart() {
        chartPressure.zoomReset()
        paning = false
        zoomLevel = 1.0
        blankTitle()
        if (lineHelper)
            lineHelper.visible = false
    }

    function showRange(nb, min, format, ticks, minorTicks) {
        resetChart()
        chartNb = nb
        axisX.min = min
        axisX.labelFormat = format
        axisX.tickCount = ticks
        axisX.minorTickCount = minorTicks
        dataSource.updateChart(chartNb)
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

    // The cursor: an L from the bottom up to the point and across to the axis at the right.
    function serieClicked(point, recreation) {
        m_point = point
        lastStartTime = backend.getCurrentTime()
        if (point.y < 0) {
            lineHelper.visible = false
            blankTitle()
            return
        }
        setTitleStyle()
        if (!recreation)
            chartPressure.title = dataSource.calcInfo(point, chartNb)
        lineHelper.visible = false
        lineHelper.clear()
        lineHelper.color = darkTheme ? "white" : "black"
        lineHelper.append(point.x, axisY.min)
        lineHelper.append(point.x, point.y)
        lineHelper.append(axisX.max, point.y)
        lineHelper.visible = true
        if (!recreation)
            timerInfo.restart()
    }

    Timer {
        id: timerInfo
        objectName: "timerInfo"
        interval: 6000
        repeat: false
        onTriggered: {
            blankTitle()
            lineHelper.visible = false
        }
    }

    Connections {
        target: backend

        function onDataUpdated(date, position, cogsog, pressure) {
            colourCurve()
            textDate.text = date

            if (position === "No Position") {
                textPos.visible = false
            } else {
                textPos.visible = true
                if (cogsog === "no")
                    textPos.text = position
                else if (window.height > window.width)
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
                if (!timerInfo.running)
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

    Connections {
        target: dataSource

        // Runs inside updateChart while the log holds its lock: only update and getTrend3h
        // of dataSource may be called from here.
        function onChartUpdated(now, minPre, maxPre, seriesCount) {
            startingDate = now

            // A negative max is an empty table: the axis keeps its range.
            if (maxPre > 0) {
                axisY.min = minPre
                axisY.max = maxPre
                var range = maxPre - minPre
                if (range <= 0.02)
                    axisY.tickCount = 2
                else if (range <= 0.03)
                    axisY.tickCount = 3
                else if (range <= 0.04)
                    axisY.tickCount = 4
                else
                    axisY.tickCount = 6
            }

            while (dataSeriesCount() > seriesCount && chartPressure.count > 1)
                chartPressure.removeSeries(chartPressure.series(chartPressure.count - 2))

            // The helper must stay last: take it out while series are added.
            var lacking = dataSeriesCount() < seriesCount
            var helperShown = lineHelper.visible
            if (lacking) {
                chartPressure.removeSeries(lineHelper)
                lineHelper = null
            }
            while (chartPressure.count < seriesCount)
                newDataSeries("lineSeries" + chartPressure.count - 1)
            if (lacking) {
                lineHelper = newHelper()
                helperDotted = false
                decorateAxes()
            }

            // The cursor stays on its moment while the curve moves left under it.
            if (helperShown) {
                var elapsed = (backend.getCurrentTime() - lastStartTime) / axisUnit()
                serieClicked(Qt.point(m_point.x - elapsed, m_point.y), true)
            }

            for (var n = 0; n < dataSeriesCount(); n++)
                dataSource.update(chartPressure.series(n), n)

            axisX.labelsAngle = 0

            if (!timerInfo.running) {
                var tendency = dataSource.getTrend3h()
                if (tendency !== "notOK" && chartNb === 1) {
                    setTitleStyle()
                    chartPressure.title = tendency
                }
            }
        }
    }

    ColumnLayout {
        anchors.fill: parent
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
            color: darkTheme ? "yellow" : "blue"
            horizontalAlignment: Text.AlignHCenter
        }

        Text {
            id: textPreLevel
            objectName: "textPreLevel"
            Layout.alignment: Qt.AlignHCenter
            visible: textDateVisible()
            text: qsTr("Sea Level Pressure (QNH)")
            font.bold: true
            font.pixelSize: page.basePixelSize * 1.1
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
            Image {
                id: imgTrend
                objectName: "imgTrend"
                source: "qrc:/Images/Trend_None~universal.png"
                Layout.preferredHeight: textPressure.height
                Layout.preferredWidth: textPressure.height
                sourceSize.width: 256
                sourceSize.height: 256
                fillMode: Image.PreserveAspectFit
                smooth: true
                mipmap: true
            }
            Item {
                Layout.fillWidth: true
            }
            // The span on the chart as a barogram for the logbook, a PDF shown once written.
            ToolButton {
                id: buttonBarogram
                objectName: "buttonBarogram"
                Layout.alignment: Qt.AlignBottom
                text: qsTranslate("BaroH", "Barogram")
                font.capitalization: Font.MixedCase
                ToolTip.visible: hovered
                ToolTip.text: qsTranslate("BaroH", "Save a barogram of this span")
                Accessible.name: ToolTip.text
                onClicked: dataSource.exportBarogram(page.chartNb)
            }
        }

        Rectangle {
            id: buttonBand
            objectName: "buttonBand"
            Layout.fillWidth: true
            Layout.preferredHeight: buttonRow.height * buttonRow.scale
            color: Material.background

            Row {
                id: buttonRow
                objectName: "buttonRow"
                anchors.centerIn: parent
                scale: wwww.width * 8.5 > page.width ? page.width / (wwww.width * 8.5) : 1.0

                M_ToolButton {
                    objectName: "button30m"
                    text: qsTr("30m")
                    checked: true
                    onClicked: showRange(0, -30, qsTr("%dm"), 7, 0)
                }
                M_ToolButton {
                    objectName: "button3h"
                    text: qsTr("3h")
                    onClicked: showRange(1, -3, qsTr("%dh"), 4, 1)
                }
                M_ToolButton {
                    objectName: "button6h"
                    text: qsTr("6h")
                    onClicked: showRange(2, -6, qsTr("%dh"), 7, 0)
                }
                M_ToolButton {
                    objectName: "button12h"
                    text: qsTr("12h")
                    onClicked: showRange(3, -12, qsTr("%dh"), 7, 0)
                }
                M_ToolButton {
                    objectName: "button1d"
                    text: qsTr("1d")
                    onClicked: showRange(4, -24, qsTr("%dh"), 7, 0)
                }
                M_ToolButton {
                    objectName: "button2d"
                    text: qsTr("2d")
                    onClicked: showRange(5, -48, qsTr("%dh"), 7, 0)
                }
                M_ToolButton {
                    objectName: "button4d"
                    text: qsTr("4d")
                    onClicked: showRange(6, -4, qsTr("%dd"), 5, 1)
                }
                M_ToolButton {
                    objectName: "button8d"
                    text: qsTr("8d")
                    onClicked: showRange(7, -8, qsTr("%dd"), 5, 1)
                }
                M_ToolButton {
                    objectName: "button16d"
                    text: qsTr("16d")
                    onClicked: showRange(8, -16, qsTr("%dd"), 5, 1)
                }
            }
        }

        ChartView {
            id: chartPressure
            objectName: "chartPressure"
            Layout.fillWidth: true
            Layout.fillHeight: true
            legend.visible: false
            antialiasing: true
            margins.top: 0
            margins.bottom: 0
            margins.left: 0
            margins.right: 0
            title: ""

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

            // A theme sets colours and fonts of everything in the chart: ours go on after it.
            function decorate() {
                theme = darkTheme ? ChartView.ChartThemeDark : ChartView.ChartThemeLight
                backgroundColor = Material.background
                titleColor = darkTheme ? "white" : "black"
                decorateAxes()
                if (lineSeries0) {
                    colourCurve()
                    for (var n = 0; n < dataSeriesCount(); n++)
                        chartPressure.series(n).width = lineWidth
                }
                if (lineHelper) {
                    if (helperDotted)
                        styleHelper()
                    else
                        lineHelper.color = darkTheme ? "white" : "black"
                }
            }

            Component.onCompleted: {
                // Its axes set once by hand, so that no binding reaches it once it is out of
                // the chart: a change of language re-evaluates every binding.
                axisAnchor.axisX = axisX
                axisAnchor.axisYRight = axisY
                removeSeries(axisAnchor)
                lineSeries0 = newDataSeries("lineSeries0")
                console.log("serie created")
                lineHelper = newHelper()
                styleHelper()
                decorate()
                var labels = axisX.labelsFont
                titleFont = Qt.font({ "family": labels.family, "pixelSize": labels.pixelSize, "bold": true })
            }

            PinchArea {
                id: pinchArea
                objectName: "pinchArea"
                anchors.fill: parent

                onPinchUpdated: {
                    if (pinch.scale > 1.0) {
                        zoomLevel *= 1.05
                        chartPressure.zoom(1.05)
                    } else if (zoomLevel > 1.0) {
                        zoomLevel /= 1.05
                        chartPressure.zoom(1.0 / 1.05)
                    } else {
                        resetChart()
                    }
                }
                onPinchFinished: {
                    if (paning) {
                        paning = false
                        pinch.accepted = true
                    } else {
                        pinch.accepted = false
                    }
                }

                MouseArea {
                    id: chartArea
                    objectName: "chartArea"
                    anchors.fill: parent
                    hoverEnabled: true
                    acceptedButtons: Qt.LeftButton

                    property point scrollPoint

                    function cursorAt(mouse) {
                        var value = chartPressure.mapToValue(Qt.point(mouse.x, mouse.y), lineSeries0)
                        serieClicked(dataSource.getValueAt(value.x, chartNb, startingDate), false)
                    }

                    onPressed: {
                        var value = chartPressure.mapToValue(Qt.point(mouse.x, mouse.y), lineSeries0)
                        if (!isZoomed() && (value.x < axisX.min || value.x > axisX.max
                                            || value.y < axisY.min || value.y > axisY.max)) {
                            mouse.accepted = false
                            return
                        }
                        serieClicked(dataSource.getValueAt(value.x, chartNb, startingDate), false)
                        if (isZoomed()) {
                            scrollPoint = Qt.point(mouse.x, mouse.y)
                            paning = true
                        }
                        mouse.accepted = true
                    }
                    onReleased: {
                        paning = false
                        mouse.accepted = true
                    }
                    onPositionChanged: {
                        cursorAt(mouse)
                        if (paning) {
                            chartPressure.scrollDown(scrollPoint.y - mouse.y)
                            chartPressure.scrollRight(scrollPoint.x - mouse.x)
                            scrollPoint = Qt.point(mouse.x, mouse.y)
                        } else {
                            mouse.accepted = false
                        }
                    }
                    onExited: lineHelper.visible = false
                    onDoubleClicked: resetChart()
                    onWheel: {
                        if (wheel.angleDelta.y > 0) {
                            zoomLevel *= 1.1
                            chartPressure.zoom(1.1)
                        } else if (zoomLevel > 1.0) {
                            zoomLevel /= 1.1
                            chartPressure.zoom(1.0 / 1.1)
                        } else {
                            resetChart()
                        }
                        wheel.accepted = true
                    }
                }
            }
        }
    }
}
