import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Shapes 1.15
import ".."

/// Lanes of what held, and lines of the levels, with the moment that is looked at.
FocusScope {
    id: picture

    property var timeline
    readonly property int margin: 76
    readonly property int laneHeight: 18
    readonly property int levelHeight: timeline.hasReplay ? 72 : 120
    readonly property int titleHeight: timeline.hasReplay ? 18 : 0
    readonly property int rowHeight: titleHeight + laneHeight * timeline.lanes.length + Theme.gap + levelHeight + Theme.gap
    readonly property int rows: timeline.hasReplay ? 2 : 1
    // By index, so that what is drawn is kept while it changes.
    readonly property var ticks: timeline.ticks
    readonly property var levelTicks: timeline.levelTicks
    readonly property var curves: timeline.curves
    /// While it is set the pointer does not move the moment.
    property bool pinned: false

    function zoom(factor) {
        timeline.zoom(factor, timeline.cursor >= 0 ? timeline.cursor : area.width / 2);
    }

    objectName: "timelinePicture"
    implicitHeight: rows * rowHeight + 20 + scrollBar.height
    activeFocusOnTab: true
    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("Lanes and levels of the drive")
    Accessible.description: qsTr("Left and Right go to the change before and after, + and - zoom, 0 shows all")
    Accessible.focusable: true

    Keys.onPressed: {
        event.accepted = true;
        if (event.key === Qt.Key_Plus || event.key === Qt.Key_Equal)
            zoom(0.5);
        else if (event.key === Qt.Key_Minus)
            zoom(2);
        else if (event.key === Qt.Key_0)
            timeline.fit();
        else if (event.key === Qt.Key_Left && event.modifiers & Qt.ShiftModifier)
            timeline.scroll(-area.width / 8);
        else if (event.key === Qt.Key_Right && event.modifiers & Qt.ShiftModifier)
            timeline.scroll(area.width / 8);
        else if (event.key === Qt.Key_Left)
            timeline.lookAtChange(-1);
        else if (event.key === Qt.Key_Right)
            timeline.lookAtChange(1);
        else if (event.key === Qt.Key_PageUp)
            timeline.scroll(-area.width);
        else if (event.key === Qt.Key_PageDown)
            timeline.scroll(area.width);
        else if (event.key === Qt.Key_Home)
            timeline.lookAtTime(0);
        else if (event.key === Qt.Key_End)
            timeline.lookAtTime(1e9);
        else if (event.key === Qt.Key_Space || event.key === Qt.Key_Return || event.key === Qt.Key_Enter)
            pinned = !pinned;
        else
            event.accepted = false;
    }

    Component {
        id: spanLabel

        Label {
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
            font.pixelSize: Theme.smallText
            text: parent.label
        }
    }
    Repeater {
        model: picture.rows

        Item {
            readonly property int row: index

            y: row * picture.rowHeight
            width: picture.width
            height: picture.rowHeight

            Label {
                visible: picture.titleHeight > 0
                height: picture.titleHeight
                verticalAlignment: Text.AlignVCenter
                font.pixelSize: Theme.smallText
                font.bold: true
                text: row === 0 ? qsTr("On the unit") : qsTr("Replayed")
            }
            Repeater {
                model: picture.timeline.lanes

                Label {
                    y: picture.titleHeight + index * picture.laneHeight
                    width: picture.margin - Theme.gap
                    height: picture.laneHeight
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    color: Theme.faint
                    font.pixelSize: Theme.smallText
                    text: modelData
                }
            }
            Rectangle {
                x: picture.margin
                y: picture.rowHeight - Theme.gap - picture.levelHeight
                width: area.width
                height: picture.levelHeight
                color: Theme.field
                border.color: Theme.line
            }
            Repeater {
                model: picture.levelTicks.length

                Item {
                    readonly property var tick: picture.levelTicks[index] || ({place: 0, label: ""})

                    y: picture.rowHeight - Theme.gap - picture.levelHeight + tick.place

                    Label {
                        y: Math.max(-tick.place, Math.min(-height / 2, picture.levelHeight - tick.place - height))
                        width: picture.margin - Theme.gap
                        horizontalAlignment: Text.AlignRight
                        color: Theme.faint
                        font.pixelSize: Theme.smallText
                        text: tick.label
                    }
                    Rectangle {
                        x: picture.margin
                        width: area.width
                        height: 1
                        color: Theme.line
                        opacity: 0.5
                    }
                }
            }
        }
    }

    Item {
        id: area

        x: picture.margin
        width: picture.width - picture.margin
        height: picture.rows * picture.rowHeight + 20
        clip: true
        onWidthChanged: picture.timeline.width = width
        Component.onCompleted: {
            picture.timeline.width = width;
            picture.timeline.levelHeight = Qt.binding(() => picture.levelHeight);
        }

        Repeater {
            model: picture.ticks.length

            Item {
                readonly property var tick: picture.ticks[index] || ({place: -1000, label: ""})

                x: tick.place
                height: area.height

                Rectangle {
                    width: 1
                    height: area.height - 20
                    color: Theme.line
                    opacity: 0.5
                }
                Label {
                    x: Math.max(-parent.x, Math.min(area.width - parent.x - width, -width / 2))
                    y: area.height - 18
                    color: Theme.faint
                    font.pixelSize: Theme.smallText
                    text: tick.label
                }
            }
        }
        Repeater {
            model: picture.timeline.marks

            Rectangle {
                objectName: "timelineMark" + index
                x: model.left
                width: Math.max(2, model.length)
                height: area.height - 20
                color: Theme.bad
                opacity: 0.14
            }
        }
        Repeater {
            model: picture.timeline.spans

            Rectangle {
                x: model.left
                y: model.row * picture.rowHeight + picture.titleHeight + model.lane * picture.laneHeight + 1
                width: Math.max(model.length === 0 ? 3 : 1, model.length)
                height: picture.laneHeight - 2
                radius: 2
                color: model.length === 0 ? Theme.warning : Qt.rgba(Theme.accent.r, Theme.accent.g, Theme.accent.b, Theme.dark ? 0.35 : 0.22)
                border.width: model.length >= 3 ? 1 : 0
                border.color: Theme.accent

                Loader {
                    readonly property real begin: Math.max(0, -parent.x)
                    readonly property string label: model.label

                    x: begin + Theme.smallGap
                    width: Math.max(0, parent.width - begin - 2 * Theme.smallGap)
                    height: parent.height
                    active: width > 14
                    sourceComponent: spanLabel
                }
            }
        }
        Repeater {
            model: picture.curves.length

            Shape {
                readonly property var curve: picture.curves[index] || ({row: 0, source: 0, paths: []})

                y: (curve.row + 1) * picture.rowHeight - Theme.gap - picture.levelHeight
                width: area.width
                height: picture.levelHeight
                // Without OpenGL a shape that was scrolled out of sight would be painted beyond all borders.
                layer.enabled: true

                ShapePath {
                    strokeColor: Theme.series[curve.source % Theme.series.length]
                    strokeWidth: 2
                    fillColor: "transparent"
                    joinStyle: ShapePath.MiterJoin

                    PathMultiline {
                        paths: curve.paths
                    }
                }
            }
        }
        Rectangle {
            objectName: "timelineCursor"
            x: picture.timeline.cursor
            visible: x >= 0
            width: 1
            height: area.height - 18
            color: picture.pinned ? Theme.accent : Theme.text
        }
        MouseArea {
            property real last: 0
            property bool dragged: false

            objectName: "timelineMouse"
            anchors.fill: parent
            hoverEnabled: true
            preventStealing: true
            onPositionChanged: {
                if (pressed) {
                    dragged = dragged || Math.abs(mouse.x - last) > 4;
                    if (dragged) {
                        picture.timeline.scroll(last - mouse.x);
                        last = mouse.x;
                    }
                } else if (!picture.pinned) {
                    picture.timeline.lookAt(mouse.x);
                }
            }
            onPressed: {
                picture.forceActiveFocus(Qt.MouseFocusReason);
                last = mouse.x;
                dragged = false;
            }
            onClicked: {
                if (dragged)
                    return;
                picture.pinned = !picture.pinned;
                picture.timeline.lookAt(mouse.x);
            }
            onWheel: {
                if (wheel.angleDelta.x !== 0 || wheel.modifiers & Qt.ShiftModifier)
                    picture.timeline.scroll(-(wheel.angleDelta.x || wheel.angleDelta.y));
                else
                    picture.timeline.zoom(Math.pow(0.8, wheel.angleDelta.y / 120), wheel.x);
            }
        }
    }
    ScrollBar {
        id: scrollBar

        objectName: "timelineScrollBar"
        x: picture.margin
        y: area.height
        width: area.width
        orientation: Qt.Horizontal
        size: picture.timeline.size
        position: picture.timeline.position
        policy: picture.timeline.isWhole ? ScrollBar.AlwaysOff : ScrollBar.AlwaysOn
        onPositionChanged: {
            if (pressed)
                picture.timeline.scrollTo(position);
        }
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: -2
        visible: picture.activeFocus
        color: "transparent"
        border.color: Theme.accent
        border.width: 2
        radius: 3
    }
}
