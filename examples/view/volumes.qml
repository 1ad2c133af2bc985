// QML alone: no program, no compiler.
//
//     qzaudio-with-flash qml volumes.qml
//
// Needs the Debian packages qml, qml-module-qzaudio, qml-module-qtquick-controls2 and qml-module-qtquick-layouts.
//
// The modules drive the simulated platform: this is for trying out on a desk. An application for the unit has its own C++ beside
// its QML, as the settings page has.
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio 1.0
import QzAudio.Simulator 1.0

ApplicationWindow {
    visible: true
    width: 360
    height: 320
    title: "Volumes"

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 16

        Repeater {
            model: ["media", "prompts", "telephony", "ring", "speech", "hicar"]

            RowLayout {
                Label {
                    Layout.preferredWidth: 90
                    text: modelData
                }
                Slider {
                    objectName: modelData
                    Layout.fillWidth: true
                    from: 0
                    to: 25
                    stepSize: 1
                    value: AudioPolicy.volumes[index]
                    onMoved: AudioPolicy.setVolume(index, value, true)
                }
                Label {
                    text: AudioPolicy.volumes[index]
                }
            }
        }
        Switch {
            text: "Mute"
            checked: AudioPolicy.muted
            onToggled: AudioPolicy.setMute(checked)
        }
        Label {
            text: "The platform has %1 for the file player".arg(Platform.live.trackVolume("main", "S+FilePlayer"))
        }
    }
}
