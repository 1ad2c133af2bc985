import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QzAudio.Desk 1.0
import ".."

Item {
    id: room

    property bool active: false
    /// The band that was worked on last.
    property int band: 0

    function signed(gain) {
        return gain > 0 ? "+" + gain : gain;
    }

    function headroom(curve) {
        return qsTr("needs %1 dB of headroom").arg(Math.max(0, curve.highestLevel).toFixed(1));
    }

    objectName: "toneRoom"

    ToneModel {
        id: tone

        desk: Desk
        active: room.active
    }

    ResponseCurve {
        id: current

        bands: tone.bands
        loudness: tone.loudness
    }

    ResponseCurve {
        id: compared
    }

    RoomScroller {
        id: scroller

        anchors.fill: parent
        contents: ColumnLayout {
            x: Theme.gap
            y: Theme.gap
            spacing: Theme.gap

            Flow {
                Layout.fillWidth: true
                spacing: Theme.gap

                RowLayout {
                    spacing: Theme.smallGap

                    Label {
                        text: qsTr("Preset of the store")
                        color: Theme.text
                    }

                    Repeater {
                        model: tone.typeTexts

                        Button {
                            readonly property bool isCustom: index === tone.typeTexts.length - 1

                            objectName: "equalizerType" + index
                            Layout.preferredWidth: isCustom ? implicitWidth : 34
                            text: isCustom ? qsTr("Custom") : index
                            highlighted: index === tone.equalizerType
                            Accessible.name: modelData
                            Accessible.checkable: true
                            Accessible.checked: highlighted
                            Keys.onReturnPressed: clicked()
                            Keys.onEnterPressed: clicked()
                            ToolTip.visible: hovered || visualFocus
                            ToolTip.delay: 600
                            ToolTip.text: isCustom ? qsTr("The sixteen gains below, as stored (type 7)") : qsTr("Sixteen gains of the library; stored as type %1").arg(index)
                            onClicked: Desk.perform(tone.typeLine(index))
                        }
                    }

                    ExpectButton {
                        objectName: "expectType"
                        line: tone.equalizerType < 0 ? "" : tone.typeExpectation(tone.equalizerType)
                    }
                }

                RowLayout {
                    spacing: Theme.smallGap

                    Switch {
                        id: loudness

                        objectName: "loudness"
                        text: qsTr("Loudness")
                        checked: tone.loudness
                        ToolTip.visible: hovered || visualFocus
                        ToolTip.delay: 600
                        ToolTip.text: qsTr("Raises what is below 100 Hz. Every start switches it off")
                        onToggled: {
                            Desk.perform(tone.loudnessLine(checked));
                            checked = Qt.binding(() => tone.loudness);
                        }
                    }

                    ExpectButton {
                        objectName: "expectLoudness"
                        line: tone.equalizerType < 0 ? "" : tone.loudnessExpectation(tone.loudness)
                    }
                }

                RowLayout {
                    spacing: Theme.smallGap

                    Label {
                        text: qsTr("Mode of the facade")
                        color: Theme.text
                    }

                    Repeater {
                        model: tone.modeTexts

                        Button {
                            objectName: "equalizerMode" + index
                            Layout.preferredWidth: 34
                            text: index
                            Accessible.name: modelData
                            Keys.onReturnPressed: clicked()
                            Keys.onEnterPressed: clicked()
                            ToolTip.visible: hovered || visualFocus
                            ToolTip.delay: 600
                            ToolTip.text: qsTr("Eight gains of the facade, past the policy: the stored type stays as it is")
                            onClicked: Desk.perform(tone.modeLine(index))
                        }
                    }
                }

                RowLayout {
                    spacing: Theme.smallGap

                    Label {
                        text: qsTr("Compare with")
                        color: Theme.text
                    }

                    ComboBox {
                        id: comparison

                        objectName: "comparison"
                        Layout.preferredWidth: 170
                        model: [qsTr("nothing")].concat(tone.namedCurves.map(curve => curve.text))
                        Accessible.name: qsTr("Curve to compare with")
                        onActivated: {
                            if (index > 0)
                                compared.load(tone.namedCurves[index - 1].name);
                        }
                    }
                }
            }

            Panel {
                Layout.fillWidth: true
                Layout.fillHeight: true
                title: qsTr("Response of the left front loudspeaker")

                ResponsePlot {
                    objectName: "responsePlot"
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    Layout.minimumHeight: 140
                    Layout.preferredHeight: 140
                    curve: current
                    otherCurve: comparison.currentIndex > 0 ? compared : null
                }

                Flow {
                    Layout.fillWidth: true
                    spacing: Theme.gap

                    LegendText {
                        objectName: "legendNow"
                        color: Theme.series[0]
                        text: qsTr("now: %1").arg(tone.curveText) + (tone.loudness ? qsTr(" with loudness") : "") + qsTr(", ") + room.headroom(current)
                    }

                    LegendText {
                        objectName: "legendCompared"
                        visible: comparison.currentIndex > 0
                        isDashed: true
                        color: Theme.series[1]
                        text: comparison.currentText + qsTr(", ") + room.headroom(compared)
                    }
                }
            }

            Panel {
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.maximumHeight: 320
                title: tone.equalizerType === tone.typeTexts.length - 1 ? qsTr("Custom curve, in use")
                                                                        : qsTr("Custom curve: the first gain that you set here selects it")

                RowLayout {
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    Layout.minimumHeight: 120
                    Layout.preferredHeight: 120
                    spacing: 0

                    Repeater {
                        id: sliders

                        model: tone.bandTexts

                        GainSlider {
                            objectName: "band" + index
                            Layout.fillWidth: true
                            Layout.fillHeight: true
                            Layout.preferredWidth: 1
                            frequency: modelData
                            name: tone.bandNames[index]
                            gain: index < tone.customGains.length ? tone.customGains[index] : 0
                            range: tone.highestGain
                            step: tone.gainStep
                            enabled: tone.customGains.length > 0
                            isCurrent: room.band === index
                            onReached: room.band = index
                            onChosen: Desk.perform(tone.gainLine(index, gain))
                            onAside: {
                                const neighbour = sliders.itemAt(index + places);
                                if (neighbour)
                                    neighbour.take();
                            }
                        }
                    }
                }

                RowLayout {
                    Layout.fillWidth: true
                    spacing: Theme.smallGap

                    Label {
                        objectName: "bandText"
                        text: qsTr("Band at %1: %2 dB").arg(tone.bandNames[room.band])
                                                       .arg(tone.customGains.length > 0 ? room.signed(tone.customGains[room.band]) : "?")
                        color: Theme.text
                    }

                    ExpectButton {
                        objectName: "expectBand"
                        line: tone.customGains.length > 0 ? tone.gainExpectation(room.band, tone.customGains[room.band]) : ""
                    }

                    Button {
                        objectName: "sendAgain"
                        text: qsTr("Send again")
                        enabled: tone.customGains.length > 0
                        Keys.onReturnPressed: clicked()
                        Keys.onEnterPressed: clicked()
                        ToolTip.visible: hovered || visualFocus
                        ToolTip.delay: 600
                        ToolTip.text: qsTr("Sets this band to the gain that it has already")
                        onClicked: Desk.perform(tone.gainLine(room.band, tone.customGains[room.band]))
                    }

                    Label {
                        objectName: "repeatHint"
                        Layout.fillWidth: true
                        wrapMode: Text.WordWrap
                        font.pixelSize: Theme.smallText
                        color: tone.customRefused ? Theme.bad : tone.repeatLeft > 0 ? Theme.warning : Theme.faint
                        text: tone.customRefused ? qsTr("A stored gain is beyond 12 dB: the facade refuses the whole curve.")
                            : tone.repeatLeft > 0 ? qsTr("For another %1 ms a gain that a band has already is ignored, and nothing is sent.").arg(tone.repeatLeft)
                            : qsTr("Steps of 2 dB: the policy takes halves. Within 500 ms of a change, a gain that a band has already is ignored.")
                    }
                }
            }
        }
    }
}
