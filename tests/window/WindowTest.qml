import QtQuick 2.15
import QtTest 1.15
import QzAudio.Desk 1.0

/// A test with the window before it, and a car that was just switched on and whose time stands still.
TestCase {
    id: test

    property var window: null
    readonly property var drive: Desk.snapshot().drive || {}

    function snapshot(section) {
        return Desk.snapshot()[section] || {};
    }

    /// An item of the window by its name, also one whose room is still being made.
    function item(name) {
        var found = null;
        tryVerify(function () {
            found = findChild(window, name) || findChild(window.contentItem.parent, name);
            return found !== null;
        }, 5000, "there is a " + name);
        return found;
    }

    function click(name) {
        var clicked = item(name);
        tryVerify(function () { return clicked.enabled && clicked.visible; }, 5000, name + " can be clicked");
        // It may have come just now, and get its place with the next frame.
        var place = "";
        tryVerify(function () {
            waitForRendering(clicked, 100);
            var last = place;
            var corner = clicked.mapToItem(null, 0, 0);
            place = [corner.x, corner.y, clicked.width, clicked.height].join();
            return clicked.width > 0 && clicked.height > 0 && place === last;
        }, 5000, name + " has its place");
        // Where the mouse was, a tool tip may lie over it.
        mouseMove(clicked);
        waitForRendering(clicked, 100);
        mouseClick(clicked);
    }

    function goToRoom(name) {
        click("room" + name);
        tryVerify(function () { return window.rooms[window.room].name === name; }, 5000, "the room is " + name);
        return item(name.toLowerCase() + "Room");
    }

    function perform(line) {
        var count = Desk.recording.doneCount;
        Desk.perform(line);
        tryVerify(function () { return Desk.recording.doneCount === count + 1; }, 5000, line);
    }

    function lines() {
        var found = [];
        for (var i = 0; i < Desk.recording.count; ++i)
            found.push(Desk.recording.data(Desk.recording.index(i, 0), 0));
        return found;
    }

    function lastLine() {
        return lines()[Desk.recording.count - 1];
    }

    when: windowShown

    function initTestCase() {
        var component = Qt.createComponent("qrc:/window/Main.qml");
        compare(component.status, Component.Ready, component.errorString());
        window = component.createObject(null);
        verify(window);
        window.requestActivate();
        tryCompare(window, "active", true);
    }

    function init() {
        Desk.startAnew();
        Desk.speed = 0;
        Desk.message = "";
        tryVerify(function () { return snapshot("drive").on === true && Desk.recording.doneCount === 1 && !Desk.replaying; }, 10000, "the car is on");
    }

    function cleanupTestCase() {
        window.closingIsFine = true;
        window.close();
        window.destroy();
    }
}
