import QtQuick 2.15
import QtQml 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import ".."

/// One of the policy's numbers, chosen by its name, with what it means.
ColumnLayout {
    id: chooser

    property string label
    property string tip
    /// Maps of {number, text, name, meaning}; the number is the index.
    property var numbers: []
    property int current: -1
    /// The expectation that it is as it is.
    property string line
    readonly property var shown: numbers[current]

    signal chosen(int number)

    spacing: Theme.smallGap

    RowLayout {
        spacing: Theme.gap
        Layout.fillWidth: true

        Label {
            text: chooser.label
            color: Theme.text
            font.pixelSize: Theme.plainText
            Layout.preferredWidth: 60
            ToolTip.text: chooser.tip
            ToolTip.visible: labelHover.hovered
            ToolTip.delay: 500

            HoverHandler {
                id: labelHover
            }
        }

        ComboBox {
            id: box

            objectName: chooser.objectName + "Box"
            model: chooser.numbers
            textRole: "text"
            displayText: chooser.shown ? chooser.shown.text : qsTr("%1, which has no name").arg(chooser.current)
            font.pixelSize: Theme.plainText
            Layout.fillWidth: true
            Layout.minimumWidth: 80
            Accessible.name: chooser.label
            Accessible.description: chooser.tip
            delegate: ItemDelegate {
                width: box.popup.width
                highlighted: box.highlightedIndex === index
                contentItem: Column {
                    Label {
                        text: modelData.text
                        color: highlighted ? Theme.accentText : Theme.text
                        font.pixelSize: Theme.plainText
                    }
                    Label {
                        text: modelData.meaning
                        color: highlighted ? Theme.accentText : Theme.faint
                        font.pixelSize: Theme.smallText
                    }
                }
            }
            popup.width: Math.max(width, 400)
            onActivated: {
                chooser.chosen(index);
                currentIndex = chooser.current;
            }

            Binding {
                target: box
                property: "currentIndex"
                value: chooser.current
                restoreMode: Binding.RestoreNone
            }
        }

        ExpectButton {
            objectName: chooser.objectName + "Expect"
            line: chooser.line
        }
    }

    Label {
        objectName: chooser.objectName + "Meaning"
        text: chooser.shown ? chooser.shown.meaning : ""
        color: Theme.faint
        font.pixelSize: Theme.smallText
        wrapMode: Text.Wrap
        Layout.fillWidth: true
    }
}
