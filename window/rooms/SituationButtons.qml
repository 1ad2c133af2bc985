import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import ".."

/// The situations of a car as buttons, a line for what each of them is about.
ColumnLayout {
    id: situationButtons

    /// Maps of {title, situations: [{name, title, explanation}, ...]}.
    property var groups: []

    signal performed(string name)

    spacing: Theme.smallGap

    Repeater {
        model: situationButtons.groups

        ColumnLayout {
            id: group

            readonly property string title: modelData.title

            spacing: 0
            Layout.fillWidth: true

            Label {
                text: group.title
                color: Theme.faint
                font.pixelSize: Theme.smallText
            }

            RowLayout {
                spacing: Theme.smallGap
                Layout.fillWidth: true

                Repeater {
                    model: modelData.situations

                    Button {
                        objectName: modelData.name
                        text: modelData.title
                        font.pixelSize: Theme.plainText
                        Layout.fillWidth: true
                        Accessible.name: group.title + ": " + text
                        Accessible.description: modelData.explanation
                        ToolTip.text: modelData.explanation
                        ToolTip.visible: hovered
                        ToolTip.delay: 500
                        Keys.onReturnPressed: clicked()
                        Keys.onEnterPressed: clicked()
                        onClicked: situationButtons.performed(modelData.name)
                    }
                }
            }
        }
    }
}
