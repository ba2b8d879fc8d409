// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls.Material 2.15
import backend 1.0

// A frame around whatever holds the keyboard's focus, over every page: the style's own
// marks are faint, and the lists, the links and the chart have none. It shows only for focus
// that came from the keyboard. A control of the style knows that (visualFocus); for any other
// item, focus that arrives while a pointer is down came from the pointer. What takes the
// focus from the keyboard is scrolled into view.
Item {
    id: layer
    objectName: "focusLayer"
    anchors.fill: parent

    // The window whose focus it follows.
    property var window: null
    // The stop of Tab that holds the focus, and the control it belongs to, which the frame
    // encloses.
    property var focusItem: null
    property var target: null
    property bool byPointer: false
    property bool pointerDown: false

    readonly property bool shown: {
        if (!focusItem || !target || !target.visible)
            return false
        if (focusItem.visualFocus !== undefined)
            return focusItem.visualFocus
        return !byPointer
    }

    // The stop of Tab that the focus is in: a list's current row holds the focus of the list.
    function stopOf(item) {
        while (item && !item.activeFocusOnTab)
            item = item.parent
        return item
    }

    // The text field inside a spin box is framed as the box.
    function ownerOf(item) {
        var owner = item.parent
        if (owner && owner.contentItem === item && owner.focusPolicy !== undefined)
            return owner
        return item
    }

    function follow() {
        byPointer = pointerDown
        focusItem = window ? stopOf(window.activeFocusItem) : null
        target = focusItem ? ownerOf(focusItem) : null
        if (shown)
            bringIntoView()
        place()
    }

    function place() {
        if (!shown)
            return
        var r = target.mapToItem(layer, 0, 0, target.width, target.height)
        var gap = frame.border.width + 1
        // Around the control, but inside the window: the bar stands on its bottom edge.
        var left = Math.max(0, r.x - gap)
        var top = Math.max(0, r.y - gap)
        frame.x = left
        frame.y = top
        frame.width = Math.min(layer.width, r.x + r.width + gap) - left
        frame.height = Math.min(layer.height, r.y + r.height + gap) - top
    }

    // Only the nearest flickable is moved: a long or wide page, or the list the item sits in.
    // The views that swipe from page to page are passed by: they move by pages.
    function bringIntoView() {
        for (var p = target.parent; p; p = p.parent) {
            if (p.contentY === undefined || p.flickableDirection === undefined)
                continue
            if (p.parent && p.parent.contentItem === p && p.parent.currentIndex !== undefined)
                continue
            var r = target.mapToItem(p.contentItem, 0, 0, target.width, target.height)
            p.contentY = scrolledTo(p.contentY, p.height, p.originY, p.contentHeight, r.y, r.height)
            p.contentX = scrolledTo(p.contentX, p.width, p.originX, p.contentWidth, r.x, r.width)
            return
        }
    }

    // Where a view that shows `size` of its content from `at` must stand so that the stretch
    // from `from`, `length` long, shows too, with a margin.
    function scrolledTo(at, size, origin, content, from, length) {
        var margin = 8
        if (from - margin < at)
            return Math.max(origin, from - margin)
        if (from + length + margin > at + size)
            return Math.max(origin, Math.min(from + length + margin - size, origin + content - size))
        return at
    }

    function pointerUp() {
        pointerDown = false
    }

    Connections {
        target: layer.window
        function onActiveFocusItemChanged() {
            layer.follow()
        }
        // The control may move under the frame: scrolled, swiped, laid out anew.
        function onAfterAnimating() {
            layer.place()
        }
    }

    // Only watches: a passive grab takes no press away from the items below. The release is
    // let through before the pointer counts as up, as clicks act on it.
    PointHandler {
        onActiveChanged: {
            if (active)
                layer.pointerDown = true
            else
                Qt.callLater(layer.pointerUp)
        }
    }

    Rectangle {
        id: frame
        objectName: "focusRing"
        visible: layer.shown
        color: "transparent"
        radius: 4
        border.width: 2
        border.color: Theme.focusColor(layer.Material.theme === Material.Dark)
    }
}
