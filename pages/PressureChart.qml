// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls.Material 2.15
import QtCharts 2.15
import backend 1.0

// The graph page's chart: one series per stretch of the log, the reading cursor (the
// helper series, always last), the range, zoom and drag. Everything it shows comes from
// dataSource.
ChartView {
    id: chartPressure
    objectName: "chartPressure"

    readonly property bool darkTheme: Material.theme === Material.Dark
    // The axes and the series that brings the y-axis in at the right, declared by the page.
    property ValueAxis xAxis
    property ValueAxis yAxis
    property LineSeries anchorSeries
    // What the page gives it: the width the axes' labels are sized for, the caption's size.
    property real pageWidth: 0
    property int titlePixelSize: 0
    // An empty title takes no room; while the pressure row is hidden a blank keeps it.
    property bool pressureShown: true

    property int chartNb: 0
    property int startingDate: 0
    property var m_point
    property var lastStartTime
    property var lineSeries0
    property var lineHelper
    property bool paning: false
    property double zoomLevel: 1.0
    property string lineColor: Theme.lineColor
    property int lineWidth: 2

    readonly property alias cursorTextShown: timerInfo.running
    // Only the first helper is dotted: one made again after a gap keeps the chart's style.
    property bool helperDotted: true

    legend.visible: false
    antialiasing: true
    margins { top: 0; bottom: 0; left: 0; right: 0 }
    title: ""

    onDarkThemeChanged: decorate()
    onPageWidthChanged: decorateAxes()

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
        var series = createSeries(type, name, xAxis, yAxis)
        series.axisYRight = yAxis
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
        lineHelper.color = Theme.inkColor(darkTheme)
        lineHelper.width = lineWidth * 0.9
    }

    function dataSeriesCount() {
        return count - 1
    }

    function colourCurve() {
        for (var n = 0; n < dataSeriesCount(); n++)
            series(n).color = lineColor
    }

    function decorateAxes() {
        yAxis.labelsFont = Qt.font({ "family": Theme.fontFamily, "pixelSize": pageWidth < 350 ? 11 : 13,
                                     "bold": pageWidth > 350 })
        xAxis.labelsFont = Qt.font({ "family": Theme.fontFamily, "pixelSize": pageWidth < 350 ? 11 : 15,
                                     "bold": pageWidth > 350 })
    }

    function setTitleStyle() {
        titleColor = Theme.inkColor(darkTheme)
        titleFont = Qt.font({ "family": Theme.fontFamily, "pixelSize": titlePixelSize, "bold": true })
    }

    function blankTitle() {
        title = pressureShown ? "" : " "
    }

    function resetChart() {
        zoomReset()
        paning = false
        zoomLevel = 1.0
        blankTitle()
        if (lineHelper)
            lineHelper.visible = false
    }

    // One step of the wheel, a pinch or a key: closer in, or back out until the chart is
    // whole again.
    function zoomStep(closer, factor) {
        if (closer) {
            zoomLevel *= factor
            zoom(factor)
        } else if (zoomLevel > 1.0) {
            zoomLevel /= factor
            zoom(1.0 / factor)
        } else {
            resetChart()
        }
    }

    function showRange(nb, min, format, ticks, minorTicks) {
        resetChart()
        chartNb = nb
        xAxis.min = min
        xAxis.labelFormat = format
        xAxis.tickCount = ticks
        xAxis.minorTickCount = minorTicks
        dataSource.updateChart(chartNb)
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
            title = dataSource.calcInfo(point, chartNb)
        lineHelper.visible = false
        lineHelper.clear()
        lineHelper.color = Theme.inkColor(darkTheme)
        lineHelper.append(point.x, yAxis.min)
        lineHelper.append(point.x, point.y)
        lineHelper.append(xAxis.max, point.y)
        lineHelper.visible = true
        if (!recreation)
            timerInfo.restart()
    }

    // A theme sets colours and fonts of everything in the chart: ours go on after it.
    function decorate() {
        theme = darkTheme ? ChartView.ChartThemeDark : ChartView.ChartThemeLight
        backgroundColor = Material.background
        titleColor = Theme.inkColor(darkTheme)
        decorateAxes()
        if (lineSeries0) {
            colourCurve()
            for (var n = 0; n < dataSeriesCount(); n++)
                series(n).width = lineWidth
        }
        if (lineHelper) {
            if (helperDotted)
                styleHelper()
            else
                lineHelper.color = Theme.inkColor(darkTheme)
        }
    }

    function outsideAxes(value) {
        return value.x < xAxis.min || value.x > xAxis.max || value.y < yAxis.min || value.y > yAxis.max
    }

    // The y-axis spans the table's values with as many ticks as two decimals can tell apart.
    function fitAxisY(minPre, maxPre) {
        yAxis.min = minPre
        yAxis.max = maxPre
        var range = maxPre - minPre
        if (range <= 0.02)
            yAxis.tickCount = 2
        else if (range <= 0.03)
            yAxis.tickCount = 3
        else if (range <= 0.04)
            yAxis.tickCount = 4
        else
            yAxis.tickCount = 6
    }

    // As many data series as the log has stretches; the helper must stay last, so it is
    // taken out while series are added.
    function matchSeries(seriesCount) {
        while (dataSeriesCount() > seriesCount && count > 1)
            removeSeries(series(count - 2))

        var lacking = dataSeriesCount() < seriesCount
        if (lacking) {
            removeSeries(lineHelper)
            lineHelper = null
        }
        while (count < seriesCount)
            newDataSeries("lineSeries" + count - 1)
        if (lacking) {
            lineHelper = newHelper()
            helperDotted = false
            decorateAxes()
        }
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
        target: dataSource

        // Runs inside updateChart while the log holds its lock: only update, getTrend3h
        // and storms.chartPeriods of dataSource may be called from here.
        function onChartUpdated(now, minPre, maxPre, seriesCount) {
            startingDate = now

            // A negative max is an empty table: the axis keeps its range.
            if (maxPre > 0)
                fitAxisY(minPre, maxPre)

            var helperShown = lineHelper.visible
            matchSeries(seriesCount)

            // The cursor stays on its moment while the curve moves left under it.
            if (helperShown) {
                var elapsed = (backend.getCurrentTime() - lastStartTime) / axisUnit()
                serieClicked(Qt.point(m_point.x - elapsed, m_point.y), true)
            }

            for (var n = 0; n < dataSeriesCount(); n++)
                dataSource.update(series(n), n)
            stormShading.show(series(0), dataSource.storms.chartPeriods())

            xAxis.labelsAngle = 0

            if (!timerInfo.running) {
                var tendency = dataSource.getTrend3h()
                if (tendency !== "notOK" && chartNb === 1) {
                    setTitleStyle()
                    title = tendency
                }
            }
        }
    }

    Component.onCompleted: {
        // Its axes set once by hand, so that no binding reaches it once it is out of
        // the chart: a change of language re-evaluates every binding.
        anchorSeries.axisX = xAxis
        anchorSeries.axisYRight = yAxis
        removeSeries(anchorSeries)
        lineSeries0 = newDataSeries("lineSeries0")
        console.log("serie created")
        lineHelper = newHelper()
        styleHelper()
        decorate()
        var labels = xAxis.labelsFont
        titleFont = Qt.font({ "family": labels.family, "pixelSize": labels.pixelSize, "bold": true })
    }

    // Where the pressure-fall warning or its alarm held over the span, behind the curve.
    StormShading {
        id: stormShading
        objectName: "stormShading"
        warningColor: Theme.stormColor(1)
        alarmColor: Theme.stormColor(2)
        shadeOpacity: darkTheme ? 0.5 : 0.3
    }

    ChartGestures {
        chart: chartPressure
    }

    ChartKeys {
        chart: chartPressure
    }
}
