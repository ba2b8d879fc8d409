// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15

// A range button of the graph page: one of a set, of which exactly one is down.
ToolButton {
    font.bold: true
    font.capitalization: Font.MixedCase
    checkable: true
    checked: false
    autoExclusive: true
    anchors.margins: 0
}
