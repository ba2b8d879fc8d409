// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// The chart's keys, for what the pointer does on it: Left and Right move the reading cursor
// along the time axis, plus and minus zoom as the wheel does, Escape shows the whole chart
// again, and with Shift the arrows drag a zoomed chart. It covers the chart to take the
// focus in its place: the chart itself cannot be a stop of Tab.
Item {
    objectName: "chartKeys"

    // The PressureChart it steers.
    property var chart

    anchors.fill: parent
    activeFocusOnTab: true
    Keys.onPressed: handle(event)

    // A sixtieth of the axis shown, so that the cursor crosses the chart in sixty steps.
    readonly property int steps: 60

    function moveCursor(direction) {
        var axis = chart.xAxis
        var step = (axis.max - axis.min) / steps
        var shown = chart.lineHelper && chart.lineHelper.visible && chart.m_point !== undefined
        // From the cursor if it shows, else in from the edge the key points away from.
        var from = shown ? chart.m_point.x : (direction < 0 ? axis.max : axis.min)
        var x = Math.max(axis.min, Math.min(axis.max, from + direction * step))
        chart.serieClicked(dataSource.getValueAt(x, chart.chartNb, chart.startingDate), false)
    }

    // As a drag of the pointer does: only a zoomed chart moves.
    function drag(dx, dy) {
        if (!chart.isZoomed())
            return
        var w = chart.plotArea.width / 10
        var h = chart.plotArea.height / 10
        if (dx !== 0)
            chart.scrollRight(dx * w)
        if (dy !== 0)
            chart.scrollDown(dy * h)
    }

    function handle(event) {
        var shift = event.modifiers & Qt.ShiftModifier
        switch (event.key) {
        case Qt.Key_Left:
            shift ? drag(-1, 0) : moveCursor(-1)
            break
        case Qt.Key_Right:
            shift ? drag(1, 0) : moveCursor(1)
            break
        case Qt.Key_Up:
            if (!shift)
                return
            drag(0, -1)
            break
        case Qt.Key_Down:
            if (!shift)
                return
            drag(0, 1)
            break
        case Qt.Key_Plus:
        case Qt.Key_Equal:
            chart.zoomStep(true, 1.1)
            break
        case Qt.Key_Minus:
            chart.zoomStep(false, 1.1)
            break
        case Qt.Key_Escape:
            chart.resetChart()
            break
        default:
            return
        }
        event.accepted = true
    }
}
