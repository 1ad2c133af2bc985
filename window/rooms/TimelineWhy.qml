import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import ".."

/// What held at the moment that is looked at, and why a source was as loud as it was then.
Panel {
    id: why

    property var timeline
    readonly property var answer: timeline.why.answer
    readonly property bool hasAnswer: answer.outcome !== undefined
    readonly property var holding: timeline.holding

    function isHolding(lane) {
        const held = holding[lane];
        return held !== undefined && (held.drive !== "" || held.replay !== "");
    }

    objectName: "timelineWhy"
    title: timeline.cursorText === "" ? qsTr("Why it is so loud") : qsTr("At %1").arg(timeline.cursorText)

    Label {
        Layout.fillWidth: true
        visible: why.timeline.cursorText === ""
        wrapMode: Text.Wrap
        color: Theme.faint
        font.pixelSize: Theme.smallText
        text: qsTr("Point at a moment of the drive, or go along it with the arrow keys: here stands what held, and why it was so loud. A click holds the moment fast.")
    }
    GridLayout {
        Layout.fillWidth: true
        columns: 2
        columnSpacing: Theme.gap
        rowSpacing: 1

        Repeater {
            model: why.timeline.lanes

            Label {
                Layout.row: index
                Layout.column: 0
                Layout.alignment: Qt.AlignTop
                visible: why.isHolding(index)
                color: Theme.faint
                font.pixelSize: Theme.smallText
                text: modelData
            }
        }
        Repeater {
            model: why.timeline.lanes

            Label {
                readonly property var held: why.holding[index] || ({drive: "", replay: ""})
                readonly property bool differs: why.timeline.hasReplay && modelData !== "part" && held.drive !== held.replay

                Layout.row: index
                Layout.column: 1
                Layout.fillWidth: true
                visible: why.isHolding(index)
                wrapMode: Text.Wrap
                color: differs ? Theme.bad : Theme.text
                font.pixelSize: Theme.smallText
                text: differs ? qsTr("%1; replayed: %2").arg(held.drive || qsTr("nothing")).arg(held.replay || qsTr("nothing")) : held.drive
            }
        }
    }
    CheckBox {
        objectName: "timelineAsksReplay"
        visible: why.timeline.hasReplay
        text: qsTr("Ask the replay")
        font.pixelSize: Theme.smallText
        checked: why.timeline.asksReplay
        Accessible.name: qsTr("Say why of the replay instead of the unit")
        onToggled: why.timeline.asksReplay = checked
    }
    Label {
        objectName: "timelineWhyProblem"
        Layout.fillWidth: true
        visible: text !== ""
        wrapMode: Text.Wrap
        color: Theme.warning
        font.pixelSize: Theme.smallText
        text: why.timeline.why.problem
    }
    Label {
        objectName: "timelineOutcome"
        Layout.fillWidth: true
        visible: why.hasAnswer
        wrapMode: Text.Wrap
        font.pixelSize: Theme.plainText
        font.bold: true
        text: why.hasAnswer ? qsTr("%1: %2").arg(why.answer.name).arg(why.answer.outcome) : ""
    }
    Repeater {
        model: why.hasAnswer ? why.answer.links : []

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 0

            RowLayout {
                spacing: Theme.gap

                Label {
                    Layout.preferredWidth: 92
                    Layout.alignment: Qt.AlignTop
                    wrapMode: Text.Wrap
                    color: Theme.faint
                    font.pixelSize: Theme.smallText
                    text: modelData.what
                }
                Label {
                    Layout.fillWidth: true
                    wrapMode: Text.Wrap
                    color: modelData.known ? Theme.text : Theme.faint
                    font.pixelSize: Theme.smallText
                    text: modelData.text
                }
            }
            Label {
                Layout.fillWidth: true
                Layout.leftMargin: 92 + Theme.gap
                visible: text !== ""
                wrapMode: Text.Wrap
                color: Theme.faint
                font.pixelSize: Theme.smallText
                font.italic: true
                text: modelData.place
            }
        }
    }
    Label {
        visible: why.hasAnswer && why.answer.otherwise.length > 0
        font.pixelSize: Theme.smallText
        font.bold: true
        text: qsTr("What it would have been otherwise")
    }
    Repeater {
        model: why.hasAnswer ? why.answer.otherwise : []

        Label {
            Layout.fillWidth: true
            wrapMode: Text.Wrap
            font.pixelSize: Theme.smallText
            text: qsTr("%1: %2").arg(modelData.what).arg(modelData.text)
        }
    }
}
