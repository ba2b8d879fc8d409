// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// The chart's pointer: hover and press move the cursor, the wheel and a pinch zoom, a drag
// pans a zoomed chart, a double click resets it.
PinchArea {
    id: pinchArea
    objectName: "pinchArea"

    // The PressureChart it steers.
    property var chart

    anchors.fill: parent

    onPinchUpdated: chart.zoomStep(pinch.scale > 1.0, 1.05)
    onPinchFinished: {
        if (chart.paning) {
            chart.paning = false
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

        function valueAt(mouse) {
            return chart.mapToValue(Qt.point(mouse.x, mouse.y), chart.lineSeries0)
        }

        function cursorAt(mouse) {
            var value = valueAt(mouse)
            chart.serieClicked(dataSource.getValueAt(value.x, chart.chartNb, chart.startingDate), false)
        }

        onPressed: {
            var value = valueAt(mouse)
            if (!chart.isZoomed() && chart.outsideAxes(value)) {
                mouse.accepted = false
                return
            }
            chart.serieClicked(dataSource.getValueAt(value.x, chart.chartNb, chart.startingDate), false)
            if (chart.isZoomed()) {
                scrollPoint = Qt.point(mouse.x, mouse.y)
                chart.paning = true
            }
            mouse.accepted = true
        }
        onReleased: {
            chart.paning = false
            mouse.accepted = true
        }
        onPositionChanged: {
            cursorAt(mouse)
            if (chart.paning) {
                chart.scrollDown(scrollPoint.y - mouse.y)
                chart.scrollRight(scrollPoint.x - mouse.x)
                scrollPoint = Qt.point(mouse.x, mouse.y)
            } else {
                mouse.accepted = false
            }
        }
        onExited: chart.lineHelper.visible = false
        onDoubleClicked: chart.resetChart()
        onWheel: {
            chart.zoomStep(wheel.angleDelta.y > 0, 1.1)
            wheel.accepted = true
        }
    }
}
