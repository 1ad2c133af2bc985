import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Simulator 1.0

// The car, on a desk. The unit has no such module, so this file is no part of the program.
ApplicationWindow {
    visible: true
    width: 240
    height: 120
    title: "Car"

    ColumnLayout {
        anchors.centerIn: parent

        Switch {
            text: "Reverse gear"
            onToggled: Platform.setReverseGear(checked)
        }
        Label {
            text: "The driver hears " + Platform.live.effectiveMainVolume()
        }
    }
}
