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
        // Not a stop of its own on the way of Tab: it would hand the focus back to the
        // control last used inside it, and Tab would go round without the first ones. The
        // view turns this on by itself, under its focus policy.
        activeFocusOnTab: false
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

        // Both lay out against the window's size. The page out of sight is out of the way
        // of Tab as well.
        BaroH {
            id: baroH
            objectName: "baroH"
            enabled: SwipeView.isCurrentItem
            layoutWidth: Window.width
            layoutHeight: Window.height
        }
        BaroV {
            id: baroV
            objectName: "baroV"
            enabled: SwipeView.isCurrentItem
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
        // The keyboard's swipe: the arrows go to a side, Space, Return and Enter to the other
        // page.
        focusPolicy: Qt.TabFocus
        Accessible.role: Accessible.PageTabList
        Accessible.name: qsTranslate("BaroSwipe", "Graph or large display")
        Keys.onPressed: {
            if (event.key === Qt.Key_Left)
                view.currentIndex = 0
            else if (event.key === Qt.Key_Right)
                view.currentIndex = view.count - 1
            else if (event.key !== Qt.Key_Space && event.key !== Qt.Key_Return && event.key !== Qt.Key_Enter)
                return
            else if (!event.isAutoRepeat)
                view.currentIndex = 1 - view.currentIndex
            event.accepted = true
        }
    }
}
