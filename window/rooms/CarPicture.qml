import QtQuick 2.15
import QtQuick.Shapes 1.15
import ".."

/**
 * The car from above, front on top, with its loudspeakers, and the point that fade and balance move the sound to.
 *
 * A drag of the point is one choice, where it ends; each arrow key is one, too.
 */
Item {
    id: picture

    /// Of CarModel.
    property var outputs: []
    property int fade
    property int balance
    property int highestStep: 15
    /// Of the place that is shown, for people.
    property string placeText

    /// While the point is dragged, the steps below it.
    readonly property int shownFade: drag.active ? drag.fade : fade
    readonly property int shownBalance: drag.active ? drag.balance : balance

    signal chosen(int fade, int balance)

    function choose(fade, balance) {
        const limit = steps => Math.max(-highestStep, Math.min(steps, highestStep));
        chosen(limit(fade), limit(balance));
    }

    /// Loudspeakers in the order of their outputs, from 0 to 1 across the body.
    readonly property var places: [Qt.point(0.15, 0.34), Qt.point(0.85, 0.34), Qt.point(0.15, 0.7), Qt.point(0.85, 0.7), Qt.point(0.33, 0.88), Qt.point(0.67, 0.88)]

    Item {
        id: body

        anchors.centerIn: parent
        height: Math.min(parent.height, parent.width * 1.55)
        width: height / 1.55

        Shape {
            anchors.fill: parent

            // The body: a bonnet, doors and a boot.
            ShapePath {
                strokeColor: Theme.faint
                strokeWidth: 2
                fillColor: Theme.field
                startX: body.width * 0.25
                startY: body.height * 0.02

                PathQuad { x: body.width * 0.75; y: body.height * 0.02; controlX: body.width * 0.5; controlY: -body.height * 0.012 }
                PathQuad { x: body.width * 0.97; y: body.height * 0.14; controlX: body.width * 0.95; controlY: body.height * 0.03 }
                PathLine { x: body.width * 0.97; y: body.height * 0.88 }
                PathQuad { x: body.width * 0.78; y: body.height * 0.985; controlX: body.width * 0.96; controlY: body.height * 0.975 }
                PathLine { x: body.width * 0.22; y: body.height * 0.985 }
                PathQuad { x: body.width * 0.03; y: body.height * 0.88; controlX: body.width * 0.04; controlY: body.height * 0.975 }
                PathLine { x: body.width * 0.03; y: body.height * 0.14 }
                PathQuad { x: body.width * 0.25; y: body.height * 0.02; controlX: body.width * 0.05; controlY: body.height * 0.03 }
            }
            // Windscreen.
            ShapePath {
                strokeColor: Theme.line
                strokeWidth: 1
                fillColor: Theme.window
                startX: body.width * 0.09
                startY: body.height * 0.22

                PathQuad { x: body.width * 0.91; y: body.height * 0.22; controlX: body.width * 0.5; controlY: body.height * 0.14 }
                PathLine { x: body.width * 0.82; y: body.height * 0.28 }
                PathQuad { x: body.width * 0.18; y: body.height * 0.28; controlX: body.width * 0.5; controlY: body.height * 0.22 }
                PathLine { x: body.width * 0.09; y: body.height * 0.22 }
            }
            // Rear window.
            ShapePath {
                strokeColor: Theme.line
                strokeWidth: 1
                fillColor: Theme.window
                startX: body.width * 0.18
                startY: body.height * 0.78

                PathLine { x: body.width * 0.82; y: body.height * 0.78 }
                PathLine { x: body.width * 0.9; y: body.height * 0.825 }
                PathQuad { x: body.width * 0.1; y: body.height * 0.825; controlX: body.width * 0.5; controlY: body.height * 0.86 }
                PathLine { x: body.width * 0.18; y: body.height * 0.78 }
            }
        }

        // Seats.
        Repeater {
            model: [Qt.point(0.36, 0.47), Qt.point(0.64, 0.47), Qt.point(0.36, 0.68), Qt.point(0.64, 0.68)]

            Rectangle {
                x: body.width * modelData.x - width / 2
                y: body.height * modelData.y - height / 2
                width: body.width * 0.2
                height: body.height * 0.11
                radius: 6
                color: Theme.window
                border.color: Theme.line
            }
        }

        // The steering wheel, which says whose ear is the driver's.
        Rectangle {
            x: body.width * 0.36 - width / 2
            y: body.height * 0.355 - height / 2
            width: body.width * 0.15
            height: body.height * 0.03
            radius: height / 2
            color: "transparent"
            border.color: Theme.faint
            border.width: 2
        }

        Repeater {
            model: picture.outputs.length

            Item {
                id: loudspeaker

                readonly property var output: picture.outputs[index] || {}

                objectName: "loudspeaker" + index
                x: body.width * picture.places[index].x
                y: body.height * picture.places[index].y
                Accessible.role: Accessible.Indicator
                Accessible.name: qsTr("%1: %2").arg(output.name).arg(output.gainText)

                Rectangle {
                    anchors.centerIn: parent
                    width: index < 4 ? 30 : 22
                    height: width
                    radius: width / 2
                    color: Theme.field
                    border.color: loudspeaker.output.gain > 0 ? Theme.accent : Theme.bad
                    border.width: 2

                    Rectangle {
                        anchors.centerIn: parent
                        width: (parent.width - 6) * Math.sqrt(Math.min(loudspeaker.output.gain, 100) / 100)
                        height: width
                        radius: width / 2
                        color: Theme.accent
                    }
                }

                Text {
                    anchors.horizontalCenter: parent.horizontalCenter
                    y: index < 4 ? 18 : 13
                    text: loudspeaker.output.gain > 0 ? qsTr("%1 %").arg(loudspeaker.output.gain) : qsTr("silent")
                    color: Theme.text
                    font.pixelSize: Theme.smallText
                    style: Text.Outline
                    styleColor: Theme.field
                }
            }
        }

        // Where the sound can be placed, between the four loudspeakers of fade and balance.
        Item {
            id: field

            readonly property real step: width / (2 * picture.highestStep)

            objectName: "place"
            x: body.width * 0.24
            y: body.height * 0.3
            width: body.width * 0.52
            height: body.height * 0.44
            activeFocusOnTab: true
            Accessible.role: Accessible.Slider
            Accessible.focusable: true
            Accessible.name: qsTr("Place of the sound: %1").arg(picture.placeText)
            Keys.onUpPressed: picture.choose(picture.fade + 1, picture.balance)
            Keys.onDownPressed: picture.choose(picture.fade - 1, picture.balance)
            Keys.onLeftPressed: picture.choose(picture.fade, picture.balance + 1)
            Keys.onRightPressed: picture.choose(picture.fade, picture.balance - 1)

            Rectangle {
                anchors.fill: parent
                color: "transparent"
                border.color: field.activeFocus ? Theme.accent : Theme.line
                border.width: field.activeFocus ? 2 : 1
                radius: 3
            }

            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width
                height: 1
                color: Theme.line
            }

            Rectangle {
                anchors.horizontalCenter: parent.horizontalCenter
                width: 1
                height: parent.height
                color: Theme.line
            }

            MouseArea {
                id: drag

                readonly property bool active: pressed
                readonly property int fade: steps(1 - 2 * mouseY / height)
                readonly property int balance: steps(1 - 2 * mouseX / width)

                function steps(share) {
                    return Math.round(Math.max(-1, Math.min(share, 1)) * picture.highestStep);
                }

                anchors.fill: parent
                preventStealing: true
                cursorShape: Qt.CrossCursor
                onPressed: field.forceActiveFocus(Qt.MouseFocusReason)
                onReleased: picture.choose(steps(1 - 2 * mouse.y / height), steps(1 - 2 * mouse.x / width)) // the binding is told of moves only
            }

            Rectangle {
                objectName: "placePoint"
                x: parent.width * (1 - picture.shownBalance / picture.highestStep) / 2 - width / 2
                y: parent.height * (1 - picture.shownFade / picture.highestStep) / 2 - height / 2
                width: 18
                height: 18
                radius: 9
                color: Theme.warning
                border.color: Theme.text
                border.width: 2
            }

            Text {
                anchors.horizontalCenter: parent.horizontalCenter
                anchors.top: parent.bottom
                text: picture.placeText
                color: Theme.text
                font.pixelSize: Theme.smallText
                font.bold: true
                style: Text.Outline
                styleColor: Theme.field
            }
        }
    }
}
