// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// The three-hour tendency in the marine glossary's words with its figure, and beside it the
// WMO characteristic of the trace. Nothing while the log is younger than three hours, or
// while no pressure is shown.
Text {
    id: line

    // The log's tendency report, or null on a page shown without one.
    property var report: null
    property bool pressureShown: true

    readonly property string words: report ? report.words : ""
    readonly property string characteristic: report ? report.characteristicText : ""

    visible: pressureShown && words !== ""
    text: characteristic === "" ? words : words + "  \u2013  " + characteristic
    horizontalAlignment: Text.AlignHCenter
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
