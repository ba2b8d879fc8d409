// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// The trend arrow: one picture per class of the log's trend.
Image {
    objectName: "imgTrend"
    source: "qrc:/Images/Trend_None~universal.png"
    sourceSize.width: 256
    sourceSize.height: 256
    fillMode: Image.PreserveAspectFit
    smooth: true
    mipmap: true

    readonly property var pictures: ({
        "-10": "None",
        "1": "Steady",
        "-1": "Steady",
        "2": "Rising",
        "3": "Rising Fast",
        "4": "Rising Very Fast",
        "-2": "Falling",
        "-3": "Falling Fast",
        "-4": "Falling Very Fast"
    })

    // Any value outside the classes keeps the arrow on show.
    function showTrend(trend) {
        if (typeof trend !== "number" || !pictures.hasOwnProperty(String(trend)))
            return
        source = "qrc:/Images/Trend_" + pictures[String(trend)] + "~universal.png"
    }
}
