import QtQuick 2.15
import QtQml 2.15
import QtQuick.Controls 2.15
import ".."

/// How focus is wanted, by name.
ComboBox {
    id: hintBox

    /// Maps of {number, name, meaning}; the number is the index and one.
    property var hints: []
    property int hint: 1

    signal chosen(int hint)

    model: hints
    textRole: "name"
    font.pixelSize: Theme.plainText
    ToolTip.text: hints[currentIndex] ? hints[currentIndex].meaning : ""
    ToolTip.visible: hovered && !down && ToolTip.text !== ""
    ToolTip.delay: 500
    popup.width: Math.max(width, 320)
    delegate: ItemDelegate {
        width: hintBox.popup.width
        highlighted: hintBox.highlightedIndex === index
        contentItem: Column {
            Label {
                text: modelData.name
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
    onActivated: {
        chosen(index + 1);
        currentIndex = hint - 1;
    }

    Binding {
        target: hintBox
        property: "currentIndex"
        value: hintBox.hint - 1
        restoreMode: Binding.RestoreNone
    }
}
