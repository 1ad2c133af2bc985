import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import Qt.labs.platform 1.1 as Platform
import QzAudio.Desk 1.0
import ".."

/// The drive so far as lanes and levels, or that of a unit's log beside its replay; and why it was as loud as it was.
Item {
    id: room

    property bool active: false
    /// A unit's log to be shown in place of the car's drive.
    property url log
    readonly property bool wide: width >= 820

    objectName: "timelineRoom"
    onLogChanged: {
        if (String(log) !== "")
            timelineModel.open(log);
    }

    TimelineModel {
        id: timelineModel

        desk: Desk
        active: room.active
    }

    Platform.FileDialog {
        id: openDialog

        title: qsTr("Open the log of a unit")
        nameFilters: [qsTr("Logs (*.log *.txt *.dlt *.gz *.xz *.zst *.json)"), qsTr("All files (*)")]
        onAccepted: timelineModel.open(file)
    }

    DropArea {
        objectName: "timelineDrop"
        anchors.fill: parent
        keys: ["text/uri-list"]
        onDropped: {
            if (drop.hasUrls) {
                timelineModel.open(drop.urls[0]);
                drop.accept(Qt.CopyAction);
            }
        }
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Theme.gap
        spacing: Theme.gap

        RowLayout {
            spacing: Theme.gap

            Button {
                objectName: "timelineOpen"
                text: qsTr("Open a log ...")
                Accessible.name: qsTr("Open the log of a unit")
                ToolTip.visible: hovered || visualFocus
                ToolTip.delay: 700
                ToolTip.text: qsTr("Shows what a unit's log tells, beside what the library does today when it is asked the same. A file can be dropped here, too.")
                onClicked: openDialog.open()
            }
            Button {
                objectName: "timelineCar"
                visible: timelineModel.log !== ""
                text: qsTr("Back to the car")
                Accessible.name: qsTr("Show the simulated car's drive again")
                onClicked: timelineModel.close()
            }
            Label {
                objectName: "timelineName"
                Layout.fillWidth: true
                elide: Text.ElideMiddle
                font.pixelSize: Theme.plainText
                text: timelineModel.log === "" ? qsTr("The drive of the simulated car") : timelineModel.log
            }
            BusyIndicator {
                Layout.preferredWidth: 24
                Layout.preferredHeight: 24
                running: timelineModel.busy !== ""
                visible: running
                Accessible.name: timelineModel.busy
            }
            Button {
                objectName: "timelineZoomOut"
                Layout.preferredWidth: 40
                text: "\u2212"
                enabled: !timelineModel.isWhole
                Accessible.name: qsTr("Show more of the drive")
                ToolTip.visible: hovered || visualFocus
                ToolTip.delay: 700
                ToolTip.text: qsTr("Show more of the drive (-)")
                onClicked: picture.zoom(2)
            }
            Button {
                objectName: "timelineZoomIn"
                Layout.preferredWidth: 40
                text: "+"
                enabled: timelineModel.hasDrive
                Accessible.name: qsTr("Show less of the drive, larger")
                ToolTip.visible: hovered || visualFocus
                ToolTip.delay: 700
                ToolTip.text: qsTr("Show less of the drive, larger (+)")
                onClicked: picture.zoom(0.5)
            }
            Button {
                objectName: "timelineFit"
                text: qsTr("Fit")
                enabled: !timelineModel.isWhole
                Accessible.name: qsTr("Show all of the drive")
                ToolTip.visible: hovered || visualFocus
                ToolTip.delay: 700
                ToolTip.text: qsTr("Show all of the drive (0)")
                onClicked: timelineModel.fit()
            }
        }

        Label {
            objectName: "timelineBusy"
            Layout.fillWidth: true
            visible: text !== ""
            wrapMode: Text.Wrap
            color: Theme.faint
            font.pixelSize: Theme.smallText
            text: timelineModel.busy
        }
        Label {
            objectName: "timelineProblem"
            Layout.fillWidth: true
            visible: text !== ""
            wrapMode: Text.Wrap
            color: Theme.bad
            font.pixelSize: Theme.plainText
            text: timelineModel.problem
        }
        Label {
            objectName: "timelineNothing"
            Layout.fillWidth: true
            visible: !timelineModel.hasDrive && timelineModel.busy === "" && timelineModel.problem === ""
            wrapMode: Text.Wrap
            color: Theme.faint
            font.pixelSize: Theme.plainText
            text: qsTr("Nothing has happened yet. When the car's audio is on, its drive is drawn here.")
        }

        ScrollView {
            id: scroll

            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: timelineModel.hasDrive
            clip: true
            contentWidth: availableWidth
            ScrollBar.horizontal.policy: ScrollBar.AlwaysOff

            // What has the keyboard is in sight.
            Connections {
                target: room.Window.window
                function onActiveFocusItemChanged() {
                    const item = room.Window.activeFocusItem;
                    const content = scroll.contentItem.contentItem;
                    let owner = item;
                    while (owner && owner !== content)
                        owner = owner.parent;
                    if (!owner || item === picture)
                        return;
                    const top = item.mapToItem(content, 0, 0).y;
                    const flick = scroll.contentItem;
                    if (top < flick.contentY)
                        flick.contentY = top;
                    else if (top + item.height > flick.contentY + flick.height)
                        flick.contentY = Math.min(top, top + item.height - flick.height);
                }
            }

            GridLayout {
                width: scroll.availableWidth
                columns: room.wide ? 2 : 1
                columnSpacing: Theme.gap
                rowSpacing: Theme.gap

                ColumnLayout {
                    Layout.alignment: Qt.AlignTop
                    Layout.fillWidth: true
                    spacing: Theme.gap

                    Flow {
                        Layout.fillWidth: true
                        spacing: Theme.smallGap

                        Repeater {
                            model: timelineModel.sources

                            Button {
                                readonly property string level: timelineModel.sourceLevels[index] || ""

                                objectName: "timelineSource" + index
                                checkable: true
                                checked: timelineModel.source === index
                                leftPadding: 22
                                text: level === "" ? modelData : modelData + ", " + level
                                font.pixelSize: Theme.smallText
                                font.bold: timelineModel.askedSource === index
                                Accessible.name: qsTr("Ask why %1 is so loud").arg(modelData)
                                ToolTip.visible: hovered || visualFocus
                                ToolTip.delay: 700
                                ToolTip.text: qsTr("Always ask of this source, %1, why it is so loud; once more: of the loudest again").arg(timelineModel.platformName(index))
                                onClicked: timelineModel.source = timelineModel.source === index ? -1 : index

                                Rectangle {
                                    x: Theme.smallGap
                                    anchors.verticalCenter: parent.verticalCenter
                                    width: 12
                                    height: 3
                                    color: Theme.series[index % Theme.series.length]
                                }
                            }
                        }
                    }
                    TimelinePicture {
                        id: picture

                        Layout.fillWidth: true
                        timeline: timelineModel
                    }
                    Repeater {
                        model: timelineModel.remarks

                        Label {
                            Layout.fillWidth: true
                            wrapMode: Text.Wrap
                            color: Theme.faint
                            font.pixelSize: Theme.smallText
                            text: modelData
                        }
                    }
                    TimelineDifferences {
                        Layout.fillWidth: true
                        visible: timelineModel.log !== "" && timelineModel.replayText !== ""
                        timeline: timelineModel
                    }
                }
                TimelineWhy {
                    Layout.alignment: Qt.AlignTop
                    Layout.fillWidth: !room.wide
                    Layout.preferredWidth: room.wide ? 300 : -1
                    timeline: timelineModel
                }
            }
        }
    }
}
