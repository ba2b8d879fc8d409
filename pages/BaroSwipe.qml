// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import backend 1.0

// The graph and, where the split screen setting allows a swipe, the large display.
ColumnLayout {
    id: baroSwipe
    anchors.fill: parent
    spacing: 0

    SwipeView {
        id: view
        objectName: "view"
        Layout.fillWidth: true
        Layout.fillHeight: true
        currentIndex: 0
        clip: true
        interactive: {
            if (typeof backend === "undefined" || !backend)
                return false
            if (backend.getSetting("splitScreen", 0) === 1)
                return true
            return width > height && backend.isPhone()
        }

        // Turning to portrait always brings the chart back.
        onWidthChanged: if (width < height) currentIndex = 0
        onHeightChanged: if (width < height) currentIndex = 0
        onCurrentIndexChanged: baroH.swipeIndexChanged(currentIndex)

        // Both lay out against the window's size.
        BaroH {
            id: baroH
            objectName: "baroH"
            layoutWidth: Window.width
            layoutHeight: Window.height
        }
        BaroV {
            id: baroV
            objectName: "baroV"
            layoutWidth: Window.width
        }
    }

    PageIndicator {
        id: indicator
        objectName: "indicator"
        Layout.alignment: Qt.AlignHCenter
        visible: view.interactive
        interactive: view.interactive
        count: view.count
        currentIndex: view.currentIndex
        onCurrentIndexChanged: view.currentIndex = currentIndex
    }
}
