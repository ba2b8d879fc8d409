// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15

// A network port. A port is a number, not a quantity: it is shown without a group separator.
SpinBox {
    from: 6000
    to: 65535
    value: 10110
    editable: true
    textFromValue: function(value) { return value.toString() }
    valueFromText: function(text) { return parseInt(text, 10) }
}
