// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15

// The maker's banner across the page, with its two links: the maker at the left, the
// device at the right.
Image {
    objectName: "imgQuillmere"

    // The width the banner spans.
    property real layoutWidth: 0

    source: "qrc:/Images/USB_banner.png"
    Layout.preferredWidth: layoutWidth
    Layout.preferredHeight: layoutWidth * 218 / 1800
    fillMode: Image.PreserveAspectFit
    verticalAlignment: Image.AlignTop
    smooth: true
    mipmap: true
    clip: true

    BannerLink {
        objectName: "makerLink"
        x: 0
        width: parent.width * 800 / 1800
        height: parent.height
        url: "https://www.quillmere.com/"
        name: qsTranslate("Banner", "Quillmere web site")
    }
    BannerLink {
        objectName: "deviceLink"
        x: parent.width - width
        width: parent.width * 485 / 1800
        height: parent.height
        url: "https://www.quillmere.com/skerry"
        name: qsTranslate("Banner", "Skerry web page")
    }
}
