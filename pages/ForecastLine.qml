// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// The rule-of-thumb forecast, one line that says what it is. Shown only when switched on in
// the settings, outside the tropics, and while a pressure is shown.
Text {
    // The log's tendency report, or null on a page shown without one.
    property var report: null
    property bool pressureShown: true

    visible: pressureShown && text !== ""
    text: report ? report.forecast : ""
    horizontalAlignment: Text.AlignHCenter
    font.italic: true
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
