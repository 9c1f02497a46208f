import QtQuick
import Larkspan.Design
import Larkspan.Shell

// The tab for the account.
Column {
    id: tab

    required property AppState app

    LKSettingsRow {
        width: parent.width
        isLast: true
        label: qsTr("Account name")

        LKTextField {
            width: 200
            label: qsTr("Account name")
            placeholderText: qsTr("My Account")
            text: tab.app.accountName
            onTextEdited: tab.app.accountName = text
        }
    }
}
