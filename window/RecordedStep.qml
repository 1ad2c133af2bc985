import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import "."
import "carTime.js" as CarTime

/// One line of the recording; the car goes to its moment by a click.
ItemDelegate {
    id: step

    // A role may be called like something that an item has.
    readonly property double moment: model.time
    readonly property bool isDone: model.done
    readonly property bool hasFailed: model.failed
    readonly property string result: model.outcome

    objectName: "step" + index
    padding: Theme.smallGap
    focusPolicy: Qt.TabFocus
    highlighted: false
    Accessible.role: Accessible.ListItem
    Accessible.name: (isDone ? qsTr("%1 at %2") : qsTr("%1 to come at %2")).arg(model.line).arg(CarTime.toText(moment))
    Accessible.description: result
    ToolTip.visible: hovered && text.truncated
    ToolTip.delay: 600
    ToolTip.text: model.line
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    onClicked: Desk.goTo(moment)

    background: Rectangle {
        color: step.hovered || step.visualFocus ? Theme.window : "transparent"
        border.color: step.visualFocus ? Theme.accent : "transparent"
    }
    contentItem: ColumnLayout {
        spacing: 0

        RowLayout {
            Layout.fillWidth: true

            Label {
                text: CarTime.toText(step.moment)
                font.family: Theme.numbers
                font.pixelSize: Theme.smallText
                color: Theme.faint
            }
            Label {
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignRight
                text: step.isDone ? "" : qsTr("to come")
                font.pixelSize: Theme.smallText
                font.italic: true
                color: Theme.faint
            }
        }
        Label {
            id: text

            Layout.fillWidth: true
            text: model.line
            textFormat: Text.PlainText
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
            maximumLineCount: 3
            elide: Text.ElideRight
            font.family: Theme.numbers
            font.pixelSize: Theme.smallText
            color: step.hasFailed ? Theme.bad : step.isDone ? Theme.text : Theme.faint
        }
        Label {
            Layout.fillWidth: true
            visible: step.result.length > 0 && step.isDone
            text: step.hasFailed ? step.result : "\u2192 " + step.result
            textFormat: Text.PlainText
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
            maximumLineCount: step.hasFailed ? 6 : 1
            elide: Text.ElideRight
            font.pixelSize: Theme.smallText
            color: step.hasFailed ? Theme.bad : Theme.faint
        }
    }
}
