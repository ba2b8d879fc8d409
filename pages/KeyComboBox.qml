// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15

// A combo box that opens on Return and Enter as it does on Space; open, the same keys take
// the entry chosen with the arrows, as they always did.
ComboBox {
    // On the release: the box's own handling of the release would close it again at once.
    Keys.onReleased: {
        if ((event.key === Qt.Key_Return || event.key === Qt.Key_Enter) && !editable && popup && !popup.visible) {
            event.accepted = true
            if (!event.isAutoRepeat)
                popup.open()
        }
    }
}
