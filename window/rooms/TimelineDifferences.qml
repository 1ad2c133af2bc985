import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import ".."

/// Where the replay of a unit's log is not what the unit did.
Panel {
    id: differences

    property var timeline

    objectName: "timelineDifferences"
    title: timeline.differenceCount === 0 ? qsTr("Unit and replay")
         : timeline.differenceCount === 1 ? qsTr("Unit and replay: one difference")
         : qsTr("Unit and replay: %1 differences").arg(timeline.differenceCount)

    Label {
        objectName: "timelineReplayText"
        Layout.fillWidth: true
        wrapMode: Text.Wrap
        font.pixelSize: Theme.smallText
        text: differences.timeline.replayText
    }
    ListView {
        id: list

        objectName: "timelineDifferenceList"
        Layout.fillWidth: true
        Layout.preferredHeight: Math.min(contentHeight, 180)
        visible: count > 0
        clip: true
        activeFocusOnTab: true
        keyNavigationEnabled: true
        boundsBehavior: Flickable.StopAtBounds
        model: differences.timeline.differences
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Differences between unit and replay")
        Keys.onReturnPressed: differences.timeline.lookAtDifference(currentIndex)
        Keys.onSpacePressed: differences.timeline.lookAtDifference(currentIndex)
        ScrollBar.vertical: ScrollBar { }
        delegate: ItemDelegate {
            objectName: "timelineDifference" + index
            width: list.width
            text: modelData.time + "  " + modelData.text
            font.pixelSize: Theme.smallText
            highlighted: ListView.isCurrentItem && list.activeFocus
            Accessible.name: text
            onClicked: {
                list.currentIndex = index;
                differences.timeline.lookAtDifference(index);
            }
        }
    }
}
