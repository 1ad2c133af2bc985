import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import "."

ApplicationWindow {
    id: window

    readonly property var rooms: [
        { name: "Drive", title: qsTr("&Drive"), hint: qsTr("Status, volumes, mute and volume keys") },
        { name: "Car", title: qsTr("&Car"), hint: qsTr("Loudspeakers, fade, balance and what plays") },
        { name: "Tone", title: qsTr("&Tone"), hint: qsTr("Equalizer and loudness") },
        { name: "Focus", title: qsTr("&Focus"), hint: qsTr("Who has audio focus, and who waits for it") },
        { name: "Platform", title: qsTr("&Platform"), hint: qsTr("The platform's calls, and faults") },
        { name: "Settings", title: qsTr("&Settings"), hint: qsTr("The settings file") },
        { name: "Microphone", title: qsTr("&Microphone"), hint: qsTr("Gains, echo and calibration") },
        { name: "Timeline", title: qsTr("T&imeline"), hint: qsTr("What happened when, also of a unit's log") }
    ]
    property int room: 0
    property bool recordingShown: width >= 1280
    /// Something to know about this window as such, told in the status bar.
    property string notice
    /// File of the manual; empty where it is not installed.
    property string manual
    /// "dark" or "light" where the command line says so; it is not kept.
    property string look
    /// A unit's log that the timeline is to show.
    property url log
    property bool closingIsFine: false

    /// Opens a scenario; any other file is taken for a log, which the timeline shows.
    function openFile(url) {
        if (/\.js$/i.test(url)) {
            recordingFile.open(url);
            return;
        }
        log = url;
        room = rooms.length - 1;
    }

    function roomNamed(name) {
        return rooms.findIndex(function (room) { return room.name.toLowerCase() === name.toLowerCase(); });
    }

    objectName: "window"
    title: (recordingFile.atStake ? "* " : "") + (recordingFile.fileName || Desk.scenario || qsTr("New recording")) + qsTr(" \u2013 Audio desk")
    width: 1024
    height: 600
    minimumWidth: 1024
    minimumHeight: 600
    visible: true
    color: Theme.window
    font.pixelSize: Theme.plainText
    palette {
        window: Theme.window
        windowText: Theme.text
        base: Theme.field
        alternateBase: Theme.panel
        text: Theme.text
        button: Theme.panel
        buttonText: Theme.text
        brightText: Theme.bad
        highlight: Theme.accent
        highlightedText: Theme.accentText
        toolTipBase: Theme.panel
        toolTipText: Theme.text
        light: Theme.line
        mid: Theme.line
        midlight: Theme.line
        dark: Theme.line
        shadow: Theme.line
    }
    onClosing: {
        if (closingIsFine || !recordingFile.atStake)
            return;
        close.accepted = false;
        recordingFile.leave(function () {
            window.closingIsFine = true;
            window.close();
        });
    }

    SystemPalette {
        id: desktop
    }
    Binding {
        target: Theme
        property: "dark"
        value: window.look !== "" ? window.look === "dark"
                                  : WindowSettings.look !== "" ? WindowSettings.look === "dark" : desktop.window.hslLightness < 0.5
    }
    RecordingFile {
        id: recordingFile

        objectName: "recordingFile"
    }
    HelpSheet {
        id: helpSheet

        manual: window.manual
    }

    Repeater {
        model: window.rooms.length

        Item {
            Shortcut {
                sequence: "Ctrl+" + (index + 1)
                onActivated: window.room = index
            }
        }
    }
    Shortcut {
        sequence: "F5"
        onActivated: topBar.runOrStop()
    }
    Shortcut {
        sequence: "Ctrl+F5"
        onActivated: Desk.speed = 10
    }
    Shortcut {
        sequence: "F10"
        enabled: Desk.nextTimer >= 0
        onActivated: Desk.stepToNextTimer()
    }
    Shortcut {
        sequence: "Ctrl+Z"
        enabled: Desk.recording.canUndo && !Desk.replaying
        onActivated: Desk.undo()
    }
    Shortcut {
        sequence: "Ctrl+Shift+Z"
        enabled: Desk.recording.canRedo && !Desk.replaying
        onActivated: Desk.redo()
    }
    Shortcut {
        sequence: "Ctrl+O"
        onActivated: recordingFile.askForFile()
    }
    Shortcut {
        sequence: "Ctrl+S"
        onActivated: recordingFile.save()
    }
    Shortcut {
        sequence: "Ctrl+Shift+S"
        onActivated: recordingFile.saveAs()
    }
    Shortcut {
        sequence: "Ctrl+N"
        onActivated: recordingFile.startAnew()
    }
    Shortcut {
        sequence: "Ctrl+G"
        onActivated: topBar.askForTime()
    }
    Shortcut {
        sequence: "Ctrl+L"
        onActivated: {
            window.recordingShown = true;
            recordingPane.askForLine();
        }
    }
    Shortcut {
        sequence: "Ctrl+R"
        onActivated: window.recordingShown = !window.recordingShown
    }
    Shortcut {
        sequence: "F1"
        onActivated: helpSheet.open()
    }
    Shortcut {
        sequence: "Ctrl+Q"
        onActivated: window.close()
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0
        focus: true
        // Only where nothing has the focus that Space means something to.
        Keys.onSpacePressed: topBar.runOrStop()

        TopBar {
            id: topBar

            Layout.fillWidth: true
            onOpenWanted: recordingFile.askForFile()
            onBundledWanted: recordingFile.openBundled(name)
            onSaveWanted: recordingFile.save()
            onSaveAsWanted: recordingFile.saveAs()
            onStartAnewWanted: recordingFile.startAnew()
            onThemeWanted: {
                WindowSettings.look = Theme.dark ? "light" : "dark";
                window.look = "";
            }
        }
        Banners {
            Layout.fillWidth: true
            Layout.fillHeight: false
        }
        RowLayout {
            spacing: 0

            RoomList {
                Layout.fillHeight: true
                Layout.preferredWidth: 120
                model: window.rooms
                room: window.room
                onChosen: window.room = room
            }
            StackLayout {
                objectName: "roomStack"
                Layout.fillWidth: true
                Layout.fillHeight: true
                currentIndex: window.room

                Repeater {
                    model: window.rooms

                    RoomPlace {
                        name: modelData.name
                        shown: index === window.room
                        log: window.log
                    }
                }
            }
            RecordingPane {
                id: recordingPane

                Layout.fillHeight: true
                Layout.preferredWidth: 260
                visible: window.recordingShown
            }
        }
        StatusBar {
            Layout.fillWidth: true
            notice: window.notice
            recordingShown: window.recordingShown
            onRecordingWanted: window.recordingShown = !window.recordingShown
            onHelpWanted: helpSheet.open()
        }
    }

    DropArea {
        objectName: "dropArea"
        anchors.fill: parent
        keys: ["text/uri-list"]
        onDropped: {
            if (!drop.hasUrls)
                return;
            drop.acceptProposedAction();
            window.openFile(drop.urls[0]);
        }
    }
}
