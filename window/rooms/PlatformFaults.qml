import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import ".."

/// The platform's operations, and how they are to fail.
FocusFlickable {
    id: faults

    required property PlatformModel model
    readonly property bool isWide: width >= 740
    property string operation: "Volume.setTrackVolume"
    property bool writes: false

    contentHeight: Math.max(height, grid.implicitHeight)

    GridLayout {
        id: grid

        width: faults.width
        height: faults.isWide ? faults.contentHeight : implicitHeight
        columns: faults.isWide ? 2 : 1
        columnSpacing: Theme.gap
        rowSpacing: Theme.gap

        Panel {
            title: qsTr("Operations")
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredHeight: 260
            Layout.minimumWidth: 320

            RowLayout {
                Layout.fillWidth: true
                Layout.rightMargin: Theme.gap

                Label {
                    Layout.fillWidth: true
                    text: qsTr("Operation")
                    color: Theme.faint
                    font.pixelSize: Theme.smallText
                }
                Label {
                    Layout.preferredWidth: 56
                    horizontalAlignment: Text.AlignRight
                    text: qsTr("Calls")
                    color: Theme.faint
                    font.pixelSize: Theme.smallText
                }
                Label {
                    Layout.preferredWidth: 56
                    horizontalAlignment: Text.AlignRight
                    text: qsTr("Refused")
                    color: Theme.faint
                    font.pixelSize: Theme.smallText
                }
            }
            ListView {
                id: operationList

                objectName: "platformOperations"
                Layout.fillWidth: true
                Layout.fillHeight: true
                clip: true
                reuseItems: true
                activeFocusOnTab: true
                keyNavigationEnabled: true
                currentIndex: 0
                model: faults.model.operations
                boundsBehavior: Flickable.StopAtBounds
                Accessible.role: Accessible.List
                Accessible.name: qsTr("Operations of the platform")
                ScrollBar.vertical: ScrollBar { policy: ScrollBar.AsNeeded }
                delegate: ItemDelegate {
                    id: entry

                    required property int index
                    required property string operation
                    required property int calls
                    required property int refused
                    required property bool writes
                    required property string fault

                    function take() {
                        faults.operation = operation;
                        faults.writes = writes;
                    }

                    width: ListView.view.width - Theme.gap
                    highlighted: ListView.isCurrentItem
                    padding: Theme.smallGap
                    Accessible.name: qsTr("%1, %2 calls, %3 refused").arg(operation).arg(calls).arg(refused) + (fault === "" ? "" : qsTr(", fails: %1").arg(fault))
                    onClicked: {
                        operationList.currentIndex = index;
                        operationList.forceActiveFocus();
                    }
                    ListView.onIsCurrentItemChanged: if (ListView.isCurrentItem) take()
                    Component.onCompleted: if (ListView.isCurrentItem) take()

                    contentItem: ColumnLayout {
                        spacing: 0

                        RowLayout {
                            Layout.fillWidth: true

                            Label {
                                Layout.fillWidth: true
                                text: entry.operation
                                wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                                color: entry.highlighted ? Theme.accentText : Theme.text
                                font.pixelSize: Theme.smallText
                            }
                            Label {
                                Layout.preferredWidth: 56
                                horizontalAlignment: Text.AlignRight
                                text: entry.calls
                                color: entry.highlighted ? Theme.accentText : Theme.text
                                font.family: Theme.numbers
                                font.pixelSize: Theme.smallText
                            }
                            Label {
                                Layout.preferredWidth: 56
                                horizontalAlignment: Text.AlignRight
                                text: entry.refused
                                color: entry.highlighted ? Theme.accentText : entry.refused > 0 ? Theme.bad : Theme.faint
                                font.family: Theme.numbers
                                font.pixelSize: Theme.smallText
                            }
                        }
                        Label {
                            Layout.fillWidth: true
                            visible: entry.fault !== ""
                            text: qsTr("fails: %1").arg(entry.fault)
                            wrapMode: Text.Wrap
                            color: entry.highlighted ? Theme.accentText : Theme.warning
                            font.pixelSize: Theme.smallText
                        }
                    }
                    background: Rectangle {
                        color: entry.highlighted ? Theme.accent : entry.hovered ? Theme.field : "transparent"
                        border.width: entry.highlighted && operationList.activeFocus ? 2 : 0
                        border.color: Theme.text
                    }
                }
            }
        }

        ColumnLayout {
            Layout.alignment: Qt.AlignTop
            Layout.fillWidth: true
            Layout.preferredWidth: 340
            Layout.maximumWidth: faults.isWide ? 420 : Infinity
            spacing: Theme.gap

            Panel {
                title: qsTr("Order a fault")
                Layout.fillWidth: true

                Label {
                    Layout.fillWidth: true
                    text: faults.operation
                    wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                    font.pixelSize: Theme.plainText
                    font.bold: true
                }
                RowLayout {
                    Label {
                        text: qsTr("Code")
                    }
                    SpinBox {
                        id: code

                        objectName: "platformFaultCode"
                        from: -999
                        to: 999
                        value: 7
                        editable: true
                        Accessible.name: qsTr("Code that the call gives")
                        ToolTip.visible: hovered
                        ToolTip.delay: 600
                        ToolTip.text: qsTr("What the failing call gives instead of 0, which is success")
                    }
                }
                Flow {
                    Layout.fillWidth: true
                    spacing: Theme.gap

                    Button {
                        objectName: "platformFailAlways"
                        text: qsTr("Each call")
                        enabled: code.value !== 0
                        Accessible.name: qsTr("Each call of %1 fails").arg(faults.operation)
                        onClicked: faults.model.fail(faults.operation, code.value, PlatformModel.Always)
                    }
                    Button {
                        objectName: "platformFailNext"
                        text: qsTr("Next call only")
                        enabled: code.value !== 0
                        Accessible.name: qsTr("The next call of %1 fails").arg(faults.operation)
                        onClicked: faults.model.fail(faults.operation, code.value, PlatformModel.NextCall)
                    }
                    Button {
                        objectName: "platformFailAfterWriting"
                        text: qsTr("After writing")
                        enabled: code.value !== 0 && faults.writes
                        Accessible.name: qsTr("Each call of %1 writes its results and fails all the same").arg(faults.operation)
                        ToolTip.visible: hovered
                        ToolTip.delay: 600
                        ToolTip.text: qsTr("The call does its work and fills its results, and gives the code all the same; for operations that have results")
                        onClicked: faults.model.fail(faults.operation, code.value, PlatformModel.AfterWriting)
                    }
                    Button {
                        objectName: "platformTakeBack"
                        text: qsTr("None")
                        enabled: faults.model.faults.some(text => text.startsWith(faults.operation + " "))
                        Accessible.name: qsTr("%1 fails no more").arg(faults.operation)
                        onClicked: faults.model.takeBackAllOf(faults.operation)
                    }
                }
            }
            Panel {
                title: qsTr("Ordered faults")
                Layout.fillWidth: true

                Label {
                    visible: faults.model.faults.length === 0
                    text: qsTr("None.")
                    color: Theme.faint
                }
                Repeater {
                    model: faults.model.faults

                    RowLayout {
                        Layout.fillWidth: true

                        Label {
                            Layout.fillWidth: true
                            text: modelData
                            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                            color: Theme.warning
                            font.pixelSize: Theme.smallText
                        }
                        Button {
                            objectName: "platformTakeBack" + index
                            text: qsTr("Take back")
                            font.pixelSize: Theme.smallText
                            Accessible.name: qsTr("Take back: %1").arg(modelData)
                            onClicked: faults.model.takeBack(index)
                        }
                    }
                }
                Button {
                    objectName: "platformClearFaults"
                    text: qsTr("Clear all faults")
                    visible: faults.model.faults.length > 0
                    onClicked: faults.model.clearFaults()
                }
            }
            Panel {
                title: qsTr("Factories that give nothing")
                Layout.fillWidth: true

                Flow {
                    Layout.fillWidth: true
                    spacing: Theme.gap

                    Repeater {
                        model: ["App", "Mixer", "Source", "Volume"]

                        CheckBox {
                            id: factory

                            readonly property bool fails: faults.model.failingFactories.indexOf(modelData) >= 0

                            objectName: "platformFactory" + modelData
                            text: modelData
                            checked: fails
                            Accessible.name: qsTr("Each %1 that is asked for is null").arg(modelData)
                            ToolTip.visible: hovered
                            ToolTip.delay: 600
                            ToolTip.text: qsTr("Each %1 object that the library asks the platform for is null").arg(modelData)
                            onToggled: {
                                if (checked)
                                    faults.model.failFactory(modelData);
                                else
                                    faults.model.takeBackAllOf(modelData + ".create");
                                checked = Qt.binding(() => factory.fails);
                            }
                        }
                    }
                }
            }
            Panel {
                title: qsTr("Slow calls")
                Layout.fillWidth: true

                RowLayout {
                    SpinBox {
                        id: duration

                        objectName: "platformCallDuration"
                        from: 0
                        to: 10000
                        stepSize: 10
                        editable: true
                        value: faults.model.callDuration
                        Accessible.name: qsTr("Milliseconds that each call takes")
                        ToolTip.visible: hovered
                        ToolTip.delay: 600
                        ToolTip.text: qsTr("Time of the car passes in each call, and timers that fall due meanwhile are late")
                        onValueModified: faults.model.setCallDuration(value)
                        Connections {
                            target: faults.model
                            function onCallDurationChanged() { duration.value = faults.model.callDuration; }
                        }
                    }
                    Label {
                        text: qsTr("ms each call takes")
                    }
                }
            }
        }
    }
}
