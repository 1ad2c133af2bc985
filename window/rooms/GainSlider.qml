import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import ".."

/// The gain of one equalizer band. A gain is chosen once a drag is over, or with each key: never at every pixel on the way.
ColumnLayout {
    id: band

    /// Of its centre, for people: "3.1k", and "3.1 kHz".
    property string frequency
    property string name
    /// dB that the band has.
    property real gain
    property int range
    property int step
    property bool isCurrent: false

    /// The user is at this band.
    signal reached()
    signal chosen(real gain)
    /// The user goes so many bands to the right.
    signal aside(int places)

    function take() {
        slider.forceActiveFocus(Qt.TabFocusReason);
    }

    spacing: 0

    Text {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        text: slider.value > 0 ? "+" + slider.value : slider.value
        color: band.isCurrent ? Theme.text : Theme.faint
        font.pixelSize: Theme.smallText
        font.bold: band.isCurrent
    }

    Slider {
        id: slider

        property bool isMoved: false

        function choose() {
            const wanted = value;
            isMoved = false;
            value = Qt.binding(() => band.gain); // what the car makes of it
            if (wanted !== band.gain)
                band.chosen(wanted);
        }

        objectName: band.objectName + "Slider"
        Layout.alignment: Qt.AlignHCenter
        Layout.fillHeight: true
        orientation: Qt.Vertical
        from: -band.range
        to: band.range
        stepSize: band.step
        snapMode: Slider.SnapAlways
        value: band.gain
        Accessible.name: qsTr("Gain of the band at %1").arg(band.name)
        Keys.onLeftPressed: band.aside(-1)
        Keys.onRightPressed: band.aside(1)
        onActiveFocusChanged: {
            if (activeFocus)
                band.reached();
        }
        onMoved: {
            band.reached();
            isMoved = true;
            if (!pressed)
                choose();
        }
        onPressedChanged: {
            if (!pressed && isMoved)
                choose();
        }
    }

    Text {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        text: band.frequency
        color: band.isCurrent ? Theme.text : Theme.faint
        font.pixelSize: Theme.smallText
        font.bold: band.isCurrent
    }
}
