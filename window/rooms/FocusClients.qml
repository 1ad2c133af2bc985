import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import ".."

/// Clients that are made by hand, and those of the scenario.
ColumnLayout {
    id: focusClients

    /// The FocusModel.
    property var focusModel

    function add() {
        focusClients.focusModel.addClient(newId.text.trim(), newHint.hint, streamType.value);
        newId.clear();
    }

    spacing: Theme.gap

    Flow {
        spacing: Theme.gap
        Layout.fillWidth: true

        TextField {
            id: newId

            objectName: "newClientId"
            width: 180
            placeholderText: qsTr("id of a new client: music")
            font.pixelSize: Theme.plainText
            selectByMouse: true
            Accessible.name: qsTr("Id of a new client")
            onAccepted: {
                if (addButton.enabled)
                    focusClients.add();
            }
        }

        HintBox {
            id: newHint

            objectName: "newHint"
            width: 210
            hints: focusClients.focusModel.hints
            Accessible.name: qsTr("How the new client requests")
            onChosen: newHint.hint = hint
        }

        SpinBox {
            id: streamType

            objectName: "newStreamType"
            width: 130
            value: 3
            to: 99
            editable: true
            font.pixelSize: Theme.plainText
            textFromValue: value => qsTr("stream %1").arg(value)
            valueFromText: text => parseInt(text.replace(/\D+/g, ""), 10)
            Accessible.name: qsTr("Stream type of the new client")
            ToolTip.text: qsTr("The stream that will play; it is only remembered.")
            ToolTip.visible: hovered
            ToolTip.delay: 500
        }

        Button {
            id: addButton

            objectName: "addClient"
            text: qsTr("Add")
            enabled: newId.text.trim() !== ""
            font.pixelSize: Theme.plainText
            Accessible.name: qsTr("Add a client")
            Keys.onReturnPressed: clicked()
            onClicked: focusClients.add()
        }
    }

    Repeater {
        model: focusClients.focusModel.clients

        ColumnLayout {
            id: client

            // Not by the context: there the boxes within put theirs over it.
            required property int index
            required property string clientId
            required property int hint
            required property bool held
            required property string told
            required property int toldCount
            required property string variable
            required property string expectedHeld
            required property string expectedChanges
            readonly property bool known: variable !== ""
            readonly property string unknownTip: qsTr("The scenario has no name for this client that steps could use.")

            spacing: Theme.smallGap
            Layout.fillWidth: true

            Rectangle {
                color: Theme.line
                Layout.fillWidth: true
                Layout.preferredHeight: 1
            }

            RowLayout {
                spacing: Theme.gap
                Layout.fillWidth: true

                Label {
                    objectName: "client" + client.index
                    text: client.held ? qsTr("%1 holds focus").arg(client.clientId) : client.clientId
                    color: client.held ? Theme.good : Theme.text
                    font.pixelSize: Theme.plainText
                    font.bold: client.held
                    wrapMode: Text.WrapAnywhere
                    Layout.fillWidth: true
                    Layout.minimumWidth: 60
                }

                ExpectButton {
                    objectName: "heldExpect" + client.index
                    line: client.expectedHeld
                }

                HintBox {
                    objectName: "clientHint" + client.index
                    hints: focusClients.focusModel.hints
                    hint: client.hint
                    enabled: client.known
                    Layout.preferredWidth: 210
                    Accessible.name: qsTr("How %1 requests").arg(client.clientId)
                    onChosen: focusClients.focusModel.setHint(client.index, hint)
                }

                Button {
                    objectName: "request" + client.index
                    text: qsTr("Request")
                    enabled: client.known
                    font.pixelSize: Theme.plainText
                    Accessible.name: qsTr("%1 requests focus").arg(client.clientId)
                    Accessible.description: client.known ? "" : client.unknownTip
                    Keys.onReturnPressed: clicked()
                    onClicked: focusClients.focusModel.request(client.index)
                }

                Button {
                    objectName: "release" + client.index
                    text: qsTr("Release")
                    enabled: client.known
                    font.pixelSize: Theme.plainText
                    Accessible.name: qsTr("%1 releases focus").arg(client.clientId)
                    Accessible.description: client.known ? "" : client.unknownTip
                    Keys.onReturnPressed: clicked()
                    onClicked: focusClients.focusModel.release(client.index)
                }
            }

            RowLayout {
                spacing: Theme.gap
                Layout.fillWidth: true

                Label {
                    objectName: "told" + client.index
                    text: {
                        const told = client.toldCount === 0 ? qsTr("was told nothing yet") : qsTr("was told %1").arg(client.told);
                        return client.known ? told : told + ". " + client.unknownTip;
                    }
                    color: Theme.faint
                    font.pixelSize: Theme.smallText
                    wrapMode: Text.Wrap
                    Layout.fillWidth: true
                }

                ExpectButton {
                    objectName: "toldExpect" + client.index
                    line: client.expectedChanges
                }
            }
        }
    }
}
