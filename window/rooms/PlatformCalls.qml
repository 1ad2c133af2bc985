import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import ".."
import "../carTime.js" as CarTime

/// The platform's journal: each call with what it came from.
ColumnLayout {
    id: calls

    required property PlatformModel model
    readonly property var journal: model.journal

    function showLatest() {
        list.currentIndex = list.count - 1;
        list.positionViewAtEnd();
    }
    function expectCurrent() {
        const line = list.currentItem ? list.currentItem.expectation : "";
        if (line !== "")
            Desk.perform(line);
    }

    spacing: Theme.gap

    Flow {
        Layout.fillWidth: true
        spacing: Theme.gap

        TextField {
            objectName: "platformCallText"
            width: 220
            placeholderText: qsTr("Text in call, cause or note")
            selectByMouse: true
            Accessible.name: qsTr("Show only calls with this text")
            onTextChanged: calls.journal.text = text
        }
        ComboBox {
            objectName: "platformCallOperation"
            width: 260
            model: calls.model.operationNames
            Accessible.name: qsTr("Show only calls of this operation")
            onActivated: calls.journal.operation = index === 0 ? "" : currentText
        }
        CheckBox {
            objectName: "platformRefusedOnly"
            text: qsTr("Refused only")
            onToggled: calls.journal.refusedOnly = checked
        }
        CheckBox {
            id: follows

            objectName: "platformFollowCalls"
            text: qsTr("Show the latest")
            checked: true
            Accessible.name: qsTr("Move to the latest call as calls come")
            onToggled: if (checked) calls.showLatest()
        }
        Label {
            objectName: "platformCallCount"
            height: follows.height
            verticalAlignment: Text.AlignVCenter
            text: calls.journal.count === calls.journal.total ? qsTr("%1 calls").arg(calls.journal.total)
                                                              : qsTr("%1 of %2 calls").arg(calls.journal.count).arg(calls.journal.total)
            color: Theme.faint
        }
    }

    Rectangle {
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.minimumHeight: 160
        color: Theme.field
        border.color: list.activeFocus ? Theme.accent : Theme.line

        ListView {
            id: list

            objectName: "platformCalls"
            anchors.fill: parent
            anchors.margins: 1
            clip: true
            reuseItems: true
            activeFocusOnTab: true
            boundsBehavior: Flickable.StopAtBounds
            model: calls.journal
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Calls of the platform; Enter expects the current one")
            keyNavigationEnabled: true
            onCountChanged: if (follows.checked) Qt.callLater(calls.showLatest)
            onMovementStarted: follows.checked = false
            Keys.onUpPressed: {
                follows.checked = false;
                decrementCurrentIndex();
            }
            Keys.onReturnPressed: calls.expectCurrent()
            Keys.onEnterPressed: calls.expectCurrent()
            Keys.onPressed: {
                const rows = Math.max(1, Math.floor(height / 30));
                const moves = {};
                moves[Qt.Key_Home] = -count;
                moves[Qt.Key_End] = count;
                moves[Qt.Key_PageUp] = -rows;
                moves[Qt.Key_PageDown] = rows;
                if (moves[event.key] === undefined)
                    return;
                follows.checked = false;
                currentIndex = Math.max(0, Math.min(count - 1, currentIndex + moves[event.key]));
                event.accepted = true;
            }
            ScrollBar.vertical: ScrollBar { policy: ScrollBar.AsNeeded }
            delegate: Control {
                id: entry

                required property int index
                required property double time
                required property string object
                required property string operation
                required property string call
                required property string cause
                required property string note
                required property bool refused
                readonly property string expectation: calls.model.expectationOfCall(operation, call, note)

                width: ListView.view.width - Theme.gap
                verticalPadding: 2
                Accessible.role: Accessible.ListItem
                Accessible.name: qsTr("%1, caused by %2").arg(call).arg(cause)

                background: Rectangle {
                    color: "transparent"
                    border.width: entry.ListView.isCurrentItem && list.activeFocus ? 1 : 0
                    border.color: Theme.accent
                }
                contentItem: RowLayout {
                    spacing: Theme.gap

                    Label {
                        Layout.alignment: Qt.AlignTop
                        Layout.leftMargin: Theme.smallGap
                        Layout.preferredWidth: 72
                        horizontalAlignment: Text.AlignRight
                        text: CarTime.toText(entry.time)
                        color: Theme.faint
                        font.family: Theme.numbers
                        font.pixelSize: Theme.smallText
                    }
                    ColumnLayout {
                        Layout.fillWidth: true
                        spacing: 0

                        Label {
                            Layout.fillWidth: true
                            text: entry.call.replace(/^\w+/, entry.object) + (entry.note === "" || entry.call.endsWith(entry.note + ")") ? "" : " (" + entry.note + ")")
                            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                            color: entry.refused ? Theme.bad : Theme.text
                            font.pixelSize: Theme.smallText
                        }
                        Label {
                            Layout.fillWidth: true
                            visible: entry.cause !== ""
                            text: entry.cause
                            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                            color: Theme.faint
                            font.pixelSize: Theme.smallText
                        }
                    }
                    ExpectButton {
                        objectName: "platformExpectCall" + entry.index
                        Layout.alignment: Qt.AlignTop
                        visible: line !== ""
                        focusPolicy: Qt.NoFocus
                        line: entry.expectation
                    }
                }
            }
        }
        Label {
            anchors.centerIn: parent
            visible: list.count === 0
            text: calls.journal.total === 0 ? qsTr("No call has reached the platform yet.") : qsTr("No call fits the filter.")
            color: Theme.faint
        }
    }
}
