// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15

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
