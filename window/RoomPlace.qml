import QtQuick 2.15
import QtQuick.Controls 2.15
import "."

/// Where a room stands. It is made when it is first looked at, as a whole (what is still in the making when the program ends
/// makes it crash), and kept.
Loader {
    id: place

    property string name
    property bool shown: false
    /// A unit's log that the timeline is to show.
    property url log
    property bool wasShown: false

    objectName: "place" + name
    active: wasShown
    source: "rooms/" + name + "Room.qml"
    onShownChanged: wasShown = wasShown || shown
    Component.onCompleted: wasShown = shown
    onLogChanged: passLog()
    onLoaded: passLog()

    function passLog() {
        if (item && item.log !== undefined && String(log) !== "")
            item.log = log;
    }

    Binding {
        target: place.item
        property: "active"
        value: place.shown
        when: place.item !== null
    }
}
