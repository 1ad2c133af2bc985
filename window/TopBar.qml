import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import "."
import "carTime.js" as CarTime

/// The car's clock with all that lets its time run, stand still and go back, and what concerns the whole recording.
Rectangle {
    id: bar

    /// The last time that the slider leads to: that of the car, or of the last recorded step after the car went back.
    readonly property double end: Math.max(Desk.now, lastStep(Desk.recording.count))

    signal openWanted()
    signal bundledWanted(string name)
    signal saveWanted()
    signal saveAsWanted()
    signal startAnewWanted()
    signal themeWanted()

    function lastStep(count) {
        var recording = Desk.recording;
        return count > 0 ? recording.data(recording.index(count - 1, 0), Recording.TimeRole) : 0;
    }

    function runOrStop() {
        Desk.speed = Desk.speed > 0 ? 0 : 1;
    }

    function askForTime() {
        clock.forceActiveFocus();
    }

    objectName: "topBar"
    implicitHeight: 48
    color: Theme.panel

    Connections {
        target: Desk
        function onNowChanged() {
            clock.showTime();
            slider.showTime();
        }
    }

    Rectangle {
        y: parent.height - 1
        width: parent.width
        height: 1
        color: Theme.line
    }

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Theme.gap
        anchors.rightMargin: Theme.gap
        spacing: Theme.smallGap

        TextField {
            id: clock

            /// Who types is not overwritten by the time that passes.
            function showTime() {
                if (!activeFocus)
                    text = CarTime.toText(Desk.now);
            }

            objectName: "clock"
            Layout.preferredWidth: 128
            font.family: Theme.numbers
            font.pixelSize: Theme.largeText
            horizontalAlignment: Text.AlignHCenter
            selectByMouse: true
            enabled: !Desk.replaying
            color: CarTime.fromText(text) < 0 ? Theme.bad : Theme.text
            Accessible.name: qsTr("The car's clock, in minutes, seconds and milliseconds")
            ToolTip.visible: hovered
            ToolTip.delay: 600
            ToolTip.text: qsTr("The car's clock. An earlier time and Enter: the car is as it was then.")
            Component.onCompleted: showTime()
            onActiveFocusChanged: {
                if (activeFocus)
                    selectAll();
                else
                    showTime();
            }
            onAccepted: {
                var time = CarTime.fromText(text);
                if (time < 0)
                    return;
                Desk.goTo(Math.min(time, bar.end));
                nextItemInFocusChain().forceActiveFocus();
            }
            Keys.onEscapePressed: nextItemInFocusChain().forceActiveFocus()
        }
        BarButton {
            objectName: "stopButton"
            text: qsTr("Stop")
            checked: Desk.speed === 0
            hint: qsTr("The car's time stands still")
            keys: qsTr("Space, F5")
            onClicked: Desk.speed = 0
        }
        BarButton {
            objectName: "realTimeButton"
            text: qsTr("1\u00d7")
            checked: Desk.speed === 1
            Accessible.name: qsTr("Real time")
            hint: qsTr("A second of the car takes a second")
            keys: qsTr("Space, F5")
            onClicked: Desk.speed = 1
        }
        BarButton {
            objectName: "fastButton"
            text: qsTr("10\u00d7")
            checked: Desk.speed === 10
            Accessible.name: qsTr("Ten times as fast")
            hint: qsTr("Ten seconds of the car take a second")
            keys: qsTr("Ctrl+F5")
            onClicked: Desk.speed = 10
        }
        BarButton {
            objectName: "stepButton"
            text: qsTr("Step")
            enabled: Desk.nextTimer >= 0
            hint: Desk.nextTimer >= 0 ? qsTr("To the moment when the next timer runs out, %1").arg(CarTime.toText(Desk.nextTimer))
                                      : qsTr("To the next timer: none runs")
            keys: qsTr("F10")
            onClicked: Desk.stepToNextTimer()
        }
        Slider {
            id: slider

            function showTime() {
                if (!pressed)
                    value = Desk.now;
            }

            objectName: "timeSlider"
            Layout.fillWidth: true
            Layout.minimumWidth: 80
            from: 0
            to: Math.max(1, bar.end)
            stepSize: 1000
            enabled: !Desk.replaying && bar.end > 0
            Accessible.name: qsTr("Moment of the drive")
            ToolTip.visible: hovered || pressed
            ToolTip.delay: pressed ? 0 : 600
            ToolTip.text: pressed ? CarTime.toText(value) : qsTr("Back to an earlier moment: the car is then as it was")
            onPressedChanged: {
                if (!pressed)
                    Desk.goTo(value);
            }
            Keys.onLeftPressed: Desk.goTo(Math.max(0, Desk.now - stepSize))
            Keys.onRightPressed: Desk.goTo(Math.min(bar.end, Desk.now + stepSize))
        }
        BarButton {
            objectName: "undoButton"
            text: qsTr("Undo")
            enabled: Desk.recording.canUndo && !Desk.replaying
            hint: qsTr("The car is as it was before the last step")
            keys: qsTr("Ctrl+Z")
            onClicked: Desk.undo()
        }
        BarButton {
            objectName: "redoButton"
            text: qsTr("Redo")
            enabled: Desk.recording.canRedo && !Desk.replaying
            hint: qsTr("Does the next step of the recording")
            keys: qsTr("Ctrl+Shift+Z")
            onClicked: Desk.redo()
        }
        ListenButton { }
        BarButton {
            id: scenarioButton

            objectName: "scenarioButton"
            text: qsTr("Scenario\u2026")
            checked: menu.visible
            hint: qsTr("Open, save and begin anew")
            Accessible.role: Accessible.ButtonMenu
            onClicked: menu.visible ? menu.close() : menu.open()

            ScenarioMenu {
                id: menu

                y: scenarioButton.height
                onOpenWanted: bar.openWanted()
                onBundledWanted: bar.bundledWanted(name)
                onSaveWanted: bar.saveWanted()
                onSaveAsWanted: bar.saveAsWanted()
                onStartAnewWanted: bar.startAnewWanted()
            }
        }
        BarButton {
            objectName: "themeButton"
            text: Theme.dark ? qsTr("Light") : qsTr("Dark")
            hint: Theme.dark ? qsTr("Dark text on a light ground") : qsTr("Light text on a dark ground")
            onClicked: bar.themeWanted()
        }
    }
}
