import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Sound 1.0

ApplicationWindow {
    id: page

    readonly property var bands: SoundSettings.bands // once for all sliders

    visible: true
    width: 640
    height: 400
    title: "Sound"

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 16

        RowLayout {
            Label {
                text: "Equalizer"
            }
            SpinBox {
                objectName: "equalizer"
                to: 7
                value: SoundSettings.equalizerType
                onValueModified: SoundSettings.equalizerType = value
            }
            Label {
                text: SoundSettings.equalizerType === 7 ? "your own curve" : "curve " + SoundSettings.equalizerType
            }
        }
        RowLayout {
            Layout.fillHeight: true

            Repeater {
                model: 16

                Slider {
                    objectName: "band " + index
                    Layout.fillHeight: true
                    orientation: Qt.Vertical
                    from: -6
                    to: 6
                    stepSize: 1
                    snapMode: Slider.SnapAlways // a step, not a pixel, is a write to the flash
                    value: page.bands[index]
                    onMoved: SoundSettings.setBand(index, value)
                }
            }
        }
        GridLayout {
            columns: 2

            Label {
                text: "Rear to front"
            }
            Slider {
                objectName: "fade"
                Layout.fillWidth: true
                from: -15
                to: 15
                stepSize: 1
                snapMode: Slider.SnapAlways
                value: SoundSettings.fade
                onMoved: SoundSettings.fade = value
                onPressedChanged: if (!pressed) SoundSettings.savePlace()
            }
            Label {
                text: "Right to left"
            }
            Slider {
                objectName: "balance"
                Layout.fillWidth: true
                from: -15
                to: 15
                stepSize: 1
                snapMode: Slider.SnapAlways
                value: SoundSettings.balance
                onMoved: SoundSettings.balance = value
                onPressedChanged: if (!pressed) SoundSettings.savePlace()
            }
        }
    }
}
