import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import ".."

/// The clients of the stack, as they lie on each other.
ColumnLayout {
    id: focusStackRows

    /// The model FocusStack.
    property var stack

    spacing: Theme.smallGap

    Label {
        objectName: "stackEmpty"
        text: qsTr("Nobody asks for focus. Add a client below, and let it request.")
        visible: focusStackRows.stack.count === 0
        color: Theme.faint
        font.pixelSize: Theme.plainText
        wrapMode: Text.Wrap
        Layout.fillWidth: true
    }

    Repeater {
        model: focusStackRows.stack

        Pane {
            objectName: "stackRow" + index
            padding: Theme.smallGap
            leftPadding: Theme.gap
            rightPadding: Theme.gap
            Layout.fillWidth: true
            Accessible.role: Accessible.ListItem
            Accessible.name: client.text + ", " + state.text
            background: Rectangle {
                color: index === 0 ? Theme.field : "transparent"
                border.color: index === 0 ? Theme.accent : Theme.line
                radius: 3
            }
            contentItem: ColumnLayout {
                spacing: 0

                RowLayout {
                    spacing: Theme.gap
                    Layout.fillWidth: true

                    Label {
                        id: client

                        text: model.clientId === "" ? qsTr("(no id)") : model.clientId
                        color: Theme.text
                        font.pixelSize: Theme.plainText
                        font.bold: index === 0
                        wrapMode: Text.WrapAnywhere
                        Layout.fillWidth: true
                    }

                    Label {
                        id: state

                        text: index === 0 && model.loss === 0 ? qsTr("holds focus") : model.loss === 0 ? qsTr("was told no loss") : qsTr("was told %1").arg(model.lossName)
                        color: model.loss === 0 ? Theme.good : Theme.warning
                        font.pixelSize: Theme.plainText
                    }
                }

                Label {
                    text: qsTr("%1, stream type %2").arg(model.hintName).arg(model.streamType)
                    color: Theme.faint
                    font.pixelSize: Theme.smallText
                    Layout.fillWidth: true
                }
            }
        }
    }
}
