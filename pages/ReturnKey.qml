// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// Return and Enter work the button that holds the focus as Space does: the style's buttons
// answer only to Space. Used once, by the item that holds every page; whatever knows its own
// meaning of Return (a text field, a list, a combo box) takes the key before it gets there.
QtObject {
    // True if the key was taken.
    function press(item, event) {
        if (!item || !item.enabled || typeof item.toggle !== "function" || item.checkable === undefined)
            return false
        if (event.isAutoRepeat)
            return true
        // As a click: a switch turns over, an exclusive choice that is on stays on.
        if (item.checkable && !(item.autoExclusive && item.checked))
            item.toggle()
        item.clicked()
        return true
    }
}
