// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import backend 1.0

// The manual as rich text, and at the press of the button the privacy policy. Links leave
// the program for the host's browser.
Rectangle {
    id: helpPage
    anchors.fill: parent
    color: Material.background

    Button {
        id: btnPolicy
        objectName: "btnPolicy"
        anchors.top: parent.top
        anchors.left: parent.left
        anchors.right: parent.right
        property bool gotoPrivacy: true
        highlighted: true
        text: gotoPrivacy ? qsTr("Privacy Policy") : qsTr("Back to help")
        Accessible.role: Accessible.Button
        Accessible.name: btnPolicy.text

        onClicked: {
            webview.text = gotoPrivacy ? backend.getPrivacyPolicy() : backend.getHelpHtml()
            btnPolicy.text = gotoPrivacy ? qsTr("Back to help") : qsTr("Privacy Policy")
            gotoPrivacy = !gotoPrivacy
            scrollv.ScrollBar.vertical.position = 0
            scrollv.ScrollBar.horizontal.position = 0
        }
    }

    ScrollView {
        id: scrollv
        objectName: "scrollv"
        anchors.top: btnPolicy.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        ScrollBar.horizontal.policy: ScrollBar.AlwaysOff
        ScrollBar.vertical.policy: ScrollBar.AlwaysOn
        contentWidth: -1
        clip: true
        // The text is read with the keys: a line, a page, or to either end.
        focusPolicy: Qt.TabFocus
        Keys.onPressed: {
            var flick = scrollv.contentItem
            var line = Theme.basePixelSize * 2
            var y = flick.contentY
            if (event.key === Qt.Key_Down)
                y += line
            else if (event.key === Qt.Key_Up)
                y -= line
            else if (event.key === Qt.Key_PageDown || event.key === Qt.Key_Space)
                y += flick.height - line
            else if (event.key === Qt.Key_PageUp)
                y -= flick.height - line
            else if (event.key === Qt.Key_Home)
                y = 0
            else if (event.key === Qt.Key_End)
                y = flick.contentHeight
            else
                return
            flick.contentY = Math.max(0, Math.min(y, flick.contentHeight - flick.height))
            event.accepted = true
        }

        TextEdit {
            id: webview
            objectName: "webview"
            property bool hasScrolled: false
            readOnly: true
            textFormat: Text.RichText
            wrapMode: TextEdit.Wrap
            antialiasing: true
            width: helpPage.width
            rightPadding: 20
            leftPadding: 10
            color: helpPage.Material.foreground
            selectByMouse: true
            text: backend.getHelpHtml()
            Accessible.role: Accessible.EditableText
            Accessible.name: btnPolicy.gotoPrivacy ? qsTr("Help") : qsTr("Privacy Policy")
            Accessible.readOnly: true
            onLinkActivated: Qt.openUrlExternally(link)
        }
    }
}
