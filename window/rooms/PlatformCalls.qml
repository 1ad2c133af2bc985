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
            onToggled: if (checked) list.positionViewAtEnd()
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
            Accessible.name: qsTr("Calls of the platform")
            onCountChanged: if (follows.checked) Qt.callLater(positionViewAtEnd)
            onMovementStarted: follows.checked = false
            Keys.onUpPressed: { follows.checked = false; flick(0, 800); }
            Keys.onDownPressed: flick(0, -800)
            Keys.onPressed: {
                if (event.key === Qt.Key_Home || event.key === Qt.Key_PageUp) {
                    follows.checked = false;
                    contentY = event.key === Qt.Key_Home ? originY : Math.max(originY, contentY - height);
                } else if (event.key === Qt.Key_PageDown) {
                    contentY = Math.min(originY + contentHeight - height, contentY + height);
                } else if (event.key === Qt.Key_End) {
                    positionViewAtEnd();
                } else {
                    return;
                }
                event.accepted = true;
            }
            ScrollBar.vertical: ScrollBar { policy: ScrollBar.AsNeeded }
            delegate: RowLayout {
                id: entry

                required property int index
                required property double time
                required property string object
                required property string operation
                required property string call
                required property string cause
                required property string note
                required property bool refused

                width: ListView.view.width - Theme.gap
                spacing: Theme.gap
                Accessible.role: Accessible.ListItem
                Accessible.name: qsTr("%1, caused by %2").arg(call).arg(cause)

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
                    activeFocusOnTab: false
                    line: calls.model.expectationOfCall(entry.operation, entry.call, entry.note)
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
