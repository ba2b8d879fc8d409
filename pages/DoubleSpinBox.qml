// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15

// A spin box that counts in whole numbers and shows them with `decimals` decimals:
// a value of 1234 with 2 decimals reads 12.34. Pages read realValue.
SpinBox {
    id: spinBox

    property int decimals: 1
    readonly property real realValue: value / Math.pow(10, decimals)

    from: 0
    value: 0
    editable: true
    stepSize: Math.pow(10, decimals)
    to: Math.pow(10, decimals) * 10000
    inputMethodHints: Qt.ImhLatinOnly

    // The limits are in counted units, not in the real values shown.
    validator: DoubleValidator {
        bottom: Math.min(spinBox.from, spinBox.to)
        top: Math.max(spinBox.from, spinBox.to)
    }

    textFromValue: function(value, locale) {
        return Number(value / Math.pow(10, decimals)).toLocaleString(locale, 'f', decimals)
    }

    // The box redraws its text only when the count changes: step it away and back, so that
    // a change of decimals alone shows as well.
    onDecimalsChanged: {
        var count = value
        value = count === from ? count + 1 : count - 1
        value = count
    }

    valueFromText: function(text, locale) {
        return Number.fromLocaleString(locale, text) * Math.pow(10, decimals)
    }
}
