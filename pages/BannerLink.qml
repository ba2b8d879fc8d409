// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// A part of the banner that opens a page of the maker's in the host's browser: by a click,
// or by Space, Return or Enter once Tab has reached it.
MouseArea {
    id: link

    property string url
    // What a screen reader says for it.
    property string name

    cursorShape: Qt.PointingHandCursor
    activeFocusOnTab: true
    Accessible.role: Accessible.Link
    Accessible.name: name
    Accessible.onPressAction: open()

    function open() {
        Qt.openUrlExternally(url)
    }

    onClicked: open()
    Keys.onPressed: {
        if (event.key === Qt.Key_Space || event.key === Qt.Key_Return || event.key === Qt.Key_Enter) {
            event.accepted = true
            if (!event.isAutoRepeat)
                open()
        }
    }
}
