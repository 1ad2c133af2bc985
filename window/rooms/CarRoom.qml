import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import ".."

Item {
    id: room

    property bool active: false
    readonly property bool isWide: width >= 800

    function place(fade, balance) {
        if (fade !== car.fade || balance !== car.balance)
            Desk.perform(car.placeLine(fade, balance));
    }

    objectName: "carRoom"

    CarModel {
        id: car

        desk: Desk
        active: room.active
    }

    RoomScroller {
        id: scroller

        anchors.fill: parent
        contents: GridLayout {
            x: Theme.gap
            y: Theme.gap
            columns: room.isWide ? 2 : 1
            columnSpacing: Theme.gap
            rowSpacing: Theme.gap

            Panel {
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.preferredWidth: room.isWide ? Math.min(room.width / 3, 420) : room.width
                Layout.maximumWidth: room.isWide ? Layout.preferredWidth : Number.POSITIVE_INFINITY
                title: qsTr("Where the sound is")

                CarPicture {
                    objectName: "carPicture"
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    Layout.minimumHeight: 320
                    Layout.preferredHeight: 320
                    outputs: car.outputs
                    fade: car.fade
                    balance: car.balance
                    highestStep: car.highestStep
                    placeText: car.textOfPlace(shownFade, shownBalance)
                    onChosen: room.place(fade, balance)
                }

                GridLayout {
                    columns: 3
                    columnSpacing: Theme.gap
                    rowSpacing: Theme.smallGap

                    Label {
                        text: qsTr("Fade")
                        color: Theme.text
                    }

                    SpinBox {
                        objectName: "fade"
                        Layout.preferredWidth: 110
                        from: -car.highestStep
                        to: car.highestStep
                        value: car.fade
                        editable: true
                        Accessible.name: qsTr("Fade, positive to the front")
                        ToolTip.visible: hovered
                        ToolTip.delay: 600
                        ToolTip.text: qsTr("15 is all front, -15 all rear")
                        onValueModified: {
                            const wanted = value;
                            value = Qt.binding(() => car.fade);
                            room.place(wanted, car.balance);
                        }
                    }

                    Button {
                        objectName: "middle"
                        Layout.rowSpan: 2
                        text: qsTr("Middle")
                        Accessible.name: qsTr("Fade and balance to the middle")
                        Keys.onReturnPressed: clicked()
                        Keys.onEnterPressed: clicked()
                        onClicked: room.place(0, 0)
                    }

                    Label {
                        text: qsTr("Balance")
                        color: Theme.text
                    }

                    SpinBox {
                        objectName: "balance"
                        Layout.preferredWidth: 110
                        from: -car.highestStep
                        to: car.highestStep
                        value: car.balance
                        editable: true
                        Accessible.name: qsTr("Balance, positive to the left")
                        ToolTip.visible: hovered
                        ToolTip.delay: 600
                        ToolTip.text: qsTr("15 is all left, -15 all right: the left is positive, which is meant so")
                        onValueModified: {
                            const wanted = value;
                            value = Qt.binding(() => car.balance);
                            room.place(car.fade, wanted);
                        }
                    }
                }
            }

            ColumnLayout {
                Layout.fillWidth: true
                Layout.fillHeight: true
                spacing: Theme.gap

                Panel {
                    Layout.fillWidth: true
                    title: qsTr("Outputs")

                    GridLayout {
                        Layout.fillWidth: true
                        columns: 5
                        columnSpacing: Theme.gap
                        rowSpacing: Theme.smallGap

                        Repeater {
                            model: [qsTr("Output"), qsTr("Gain"), qsTr("Level of main"), qsTr("Delay"), qsTr("Filter")]

                            Label {
                                Layout.row: 0
                                Layout.column: index
                                text: modelData
                                color: Theme.faint
                                font.pixelSize: Theme.smallText
                            }
                        }

                        Repeater {
                            model: car.outputs.length

                            Label {
                                Layout.row: index + 1
                                Layout.column: 0
                                text: car.outputs[index].name
                                color: Theme.text
                            }
                        }

                        Repeater {
                            model: car.outputs.length

                            RowLayout {
                                required property int index

                                Layout.row: index + 1
                                Layout.column: 1
                                spacing: 0

                                Label {
                                    objectName: "gain" + index
                                    Layout.preferredWidth: gainWidth.width
                                    text: car.outputs[index].gainText
                                    color: Theme.text
                                }

                                ExpectButton {
                                    objectName: "expectGain" + index
                                    line: car.gainExpectation(index, car.outputs[index].gain)
                                }
                            }
                        }

                        Repeater {
                            model: car.outputs.length

                            LevelBar {
                                Layout.row: index + 1
                                Layout.column: 2
                                Layout.fillWidth: true
                                Layout.minimumWidth: 90
                                objectName: "level" + index
                                value: car.outputs[index].loudness
                                text: car.outputs[index].levelText
                                Accessible.name: qsTr("Level at %1").arg(car.outputs[index].name)
                            }
                        }

                        Repeater {
                            model: car.outputs.length

                            RowLayout {
                                required property int index

                                Layout.row: index + 1
                                Layout.column: 3
                                spacing: 0

                                DelayBox {
                                    objectName: "delay" + index
                                    delay: car.outputs[index].delay
                                    Accessible.name: qsTr("Delay of %1").arg(car.outputs[index].name)
                                    onChosen: Desk.perform(car.delayLine(index, delay))
                                }

                                ExpectButton {
                                    objectName: "expectDelay" + index
                                    line: car.delayExpectation(index, car.outputs[index].delay)
                                }
                            }
                        }

                        Repeater {
                            model: car.outputs.length

                            Label {
                                objectName: "filter" + index
                                Layout.row: index + 1
                                Layout.column: 4
                                Layout.maximumWidth: 130
                                Layout.preferredWidth: 70
                                Layout.fillWidth: true
                                text: car.outputs[index].filter || qsTr("none")
                                color: car.outputs[index].filter ? Theme.text : Theme.faint
                                font.pixelSize: Theme.smallText
                                wrapMode: Text.Wrap
                            }
                        }
                    }

                    Label {
                        visible: car.outputs.length === 0
                        text: qsTr("The car has not answered yet.")
                        color: Theme.faint
                    }

                    TextMetrics {
                        id: gainWidth

                        font.pixelSize: Theme.plainText
                        text: qsTr("%1 %, %2 dB").arg(100).arg("-10.5")
                    }
                }

                Panel {
                    Layout.fillWidth: true
                    title: qsTr("Front and rear")

                    RowLayout {
                        Layout.fillWidth: true
                        spacing: Theme.gap

                        Switch {
                            objectName: "frontOnly"
                            text: qsTr("Front only")
                            checked: car.frontRearMode === 0
                            enabled: car.mainSource.length > 0
                            ToolTip.visible: hovered || visualFocus
                            ToolTip.delay: 600
                            ToolTip.text: qsTr("Routes the source of the main track again, to the front loudspeakers or to all")
                            onToggled: {
                                Desk.perform(car.frontOnlyLine(checked));
                                checked = Qt.binding(() => car.frontRearMode === 0);
                            }
                        }

                        ExpectButton {
                            objectName: "expectFrontRear"
                            line: car.frontRearMode < 0 ? "" : car.frontRearExpectation(car.frontRearMode)
                        }

                        Label {
                            Layout.fillWidth: true
                            wrapMode: Text.WordWrap
                            color: Theme.faint
                            font.pixelSize: Theme.smallText
                            text: car.mainSource.length > 0 ? qsTr("Chosen together with the source of the main track.")
                                                            : qsTr("Chosen together with the source of the main track; none plays now.")
                        }
                    }
                }

                Panel {
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    title: car.masterVolume < 0 ? qsTr("At the driver's ear") : qsTr("At the driver's ear, with a master volume of %1").arg(car.masterVolume)

                    Repeater {
                        model: car.sources

                        Label {
                            objectName: "source" + index
                            Layout.fillWidth: true
                            elide: Text.ElideRight
                            text: modelData.muted ? qsTr("%1 on %2: muted").arg(modelData.text).arg(modelData.track)
                                                  : qsTr("%1 on %2: %3").arg(modelData.text).arg(modelData.track).arg(modelData.levelText)
                            color: Theme.text
                        }
                    }

                    Label {
                        visible: car.sources.length === 0
                        text: qsTr("Nothing plays.")
                        color: Theme.faint
                    }

                    Item {
                        Layout.fillHeight: true
                    }
                }
            }
        }
    }
}
