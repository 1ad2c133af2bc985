import QtQuick 2.15
import QtQuick.Controls 2.15
import ".."

/// What goes with the sound: ignition, ducking, mute, reverse gear.
Flow {
    id: driveFacts

    /// The DriveModel.
    property var drive

    spacing: 2 * Theme.gap

    component Fact: Label {
        id: fact

        property bool strong: false
        property string tip

        height: 24
        verticalAlignment: Text.AlignVCenter
        color: strong ? Theme.warning : Theme.faint
        font.pixelSize: Theme.smallText
        font.bold: strong
        ToolTip.text: tip
        ToolTip.visible: hover.hovered
        ToolTip.delay: 500

        HoverHandler {
            id: hover
        }
    }

    Fact {
        objectName: "ignition"
        text: driveFacts.drive.on ? qsTr("ignition on") : qsTr("ignition off")
        tip: qsTr("While it is off there is no policy. A step that needs one switches it on.")
    }

    Fact {
        objectName: "ducked"
        text: strong ? qsTr("ducked to %1 %").arg(driveFacts.drive.duckGain) : qsTr("not ducked")
        strong: driveFacts.drive.ducked
        tip: qsTr("To duck is to lower the main track while something else speaks.")
    }

    ExpectButton {
        objectName: "duckedExpect"
        line: "expect(Platform.isDucked()).toBe(" + driveFacts.drive.ducked + ");"
    }

    Fact {
        objectName: "muted"
        text: strong ? qsTr("muted") : qsTr("not muted")
        strong: driveFacts.drive.muted
        tip: qsTr("As the control facade remembers it.")
    }

    Fact {
        objectName: "reverseGear"
        text: strong ? qsTr("reverse gear in") : qsTr("no reverse gear")
        strong: driveFacts.drive.reverseGear
        tip: qsTr("Reverse gear ducks the way a CarPlay prompt does.")
    }
}
