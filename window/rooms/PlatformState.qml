import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import ".."

/// The chip's state as a table, and the books of the platform's objects.
FocusFlickable {
    id: tables

    required property PlatformModel model
    readonly property bool isWide: width >= 740

    contentHeight: Math.max(height, grid.implicitHeight)

    GridLayout {
        id: grid

        width: tables.width
        height: tables.isWide ? tables.contentHeight : implicitHeight
        columns: tables.isWide ? 2 : 1
        columnSpacing: Theme.gap
        rowSpacing: Theme.gap

        Panel {
            title: qsTr("State of the audio chip")
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredHeight: 320
            Layout.minimumWidth: 320

            ListView {
                id: table

                objectName: "platformState"
                Layout.fillWidth: true
                Layout.fillHeight: true
                clip: true
                reuseItems: true
                activeFocusOnTab: true
                keyNavigationEnabled: true
                highlightFollowsCurrentItem: true
                boundsBehavior: Flickable.StopAtBounds
                model: tables.model.state
                Accessible.role: Accessible.Table
                Accessible.name: qsTr("State of the audio chip")
                ScrollBar.vertical: ScrollBar { policy: ScrollBar.AsNeeded }
                delegate: Control {
                    id: entry

                    required property int index
                    required property string group
                    required property string name
                    required property string value
                    required property string expectation

                    width: ListView.view.width - Theme.gap
                    implicitHeight: Math.max(contentItem.implicitHeight, 24)
                    Accessible.role: Accessible.Row
                    Accessible.name: group + " " + name + ": " + value

                    background: Rectangle {
                        color: entry.index % 2 === 0 ? Theme.panel : Theme.window
                        border.width: entry.ListView.isCurrentItem && table.activeFocus ? 1 : 0
                        border.color: Theme.accent
                    }
                    contentItem: RowLayout {
                        spacing: Theme.gap

                        Label {
                            Layout.preferredWidth: 100
                            Layout.leftMargin: Theme.smallGap
                            text: entry.group
                            wrapMode: Text.Wrap
                            color: Theme.faint
                            font.pixelSize: Theme.smallText
                        }
                        Label {
                            Layout.preferredWidth: 200
                            text: entry.name
                            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                            font.pixelSize: Theme.smallText
                        }
                        Label {
                            Layout.fillWidth: true
                            text: entry.value
                            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                            font.pixelSize: Theme.smallText
                        }
                        ExpectButton {
                            objectName: "platformExpectState" + entry.index
                            visible: entry.expectation !== ""
                            activeFocusOnTab: entry.ListView.isCurrentItem
                            line: entry.expectation
                        }
                    }
                }
            }
        }

        ColumnLayout {
            Layout.alignment: Qt.AlignTop
            Layout.fillWidth: true
            Layout.preferredWidth: 300
            Layout.maximumWidth: tables.isWide ? 360 : Infinity
            spacing: Theme.gap

            Panel {
                title: qsTr("Books: objects that the platform handed out")
                Layout.fillWidth: true

                GridLayout {
                    columns: 4
                    columnSpacing: Theme.gap
                    rowSpacing: 0

                    Label { text: qsTr("Kind"); color: Theme.faint; font.pixelSize: Theme.smallText }
                    Label { text: qsTr("Alive"); color: Theme.faint; font.pixelSize: Theme.smallText }
                    Label { text: qsTr("Made"); color: Theme.faint; font.pixelSize: Theme.smallText }
                    Label { text: "" }
                    Repeater {
                        model: tables.model.books.length * 4

                        Loader {
                            readonly property var book: tables.model.books[Math.floor(index / 4)]
                            readonly property string member: ["kind", "alive", "made", "expect"][index % 4]

                            sourceComponent: member === "expect" ? expectation : shown
                            Component {
                                id: shown

                                Label {
                                    text: book ? book[member] : ""
                                    font.pixelSize: Theme.smallText
                                    font.family: member === "kind" ? Qt.application.font.family : Theme.numbers
                                }
                            }
                            Component {
                                id: expectation

                                ExpectButton {
                                    objectName: "platformExpectAlive" + (book ? book.kind : "")
                                    line: book ? "expect(Platform.alive(\"" + book.kind + "\")).toBe(" + book.alive + ");" : ""
                                }
                            }
                        }
                    }
                }
            }
            Panel {
                title: qsTr("Living objects")
                Layout.fillWidth: true

                Label {
                    objectName: "platformLiving"
                    Layout.fillWidth: true
                    text: tables.model.living.length === 0 ? qsTr("None.") : tables.model.living.join(", ")
                    wrapMode: Text.Wrap
                    font.pixelSize: Theme.smallText
                }
            }
            Panel {
                title: qsTr("Problems")
                Layout.fillWidth: true

                Label {
                    objectName: "platformProblems"
                    Layout.fillWidth: true
                    text: tables.model.problems.length === 0 ? qsTr("None: each object was destroyed once, and not used afterwards.") : tables.model.problems.join("\n")
                    wrapMode: Text.Wrap
                    color: tables.model.problems.length === 0 ? Theme.faint : Theme.bad
                    font.pixelSize: Theme.smallText
                }
                RowLayout {
                    Label {
                        Layout.fillWidth: true
                        text: qsTr("Expect no problems")
                        color: Theme.faint
                        font.pixelSize: Theme.smallText
                    }
                    ExpectButton {
                        objectName: "platformExpectProblems"
                        line: "expect(Platform.problems().length).toBe(" + tables.model.problems.length + ");"
                    }
                }
            }
        }
    }
}
