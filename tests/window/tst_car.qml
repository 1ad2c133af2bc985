import QtQuick 2.15
import QzAudio.Desk 1.0

WindowTest {
    name: "Car"

    function car() {
        return snapshot("car");
    }

    function gains() {
        return car().loudspeakers.map(loudspeaker => loudspeaker.gain);
    }

    function test_arrow_keys() {
        goToRoom("Car");
        item("place").forceActiveFocus();
        keyClick(Qt.Key_Up);
        tryVerify(function () { return car().fade === 1; });
        keyClick(Qt.Key_Left);
        tryVerify(function () { return car().balance === 1; });
        compare(lines().slice(-2), ["AudioControl.setFadeBalance(1, 0);", "AudioControl.setFadeBalance(1, 1);"]);
        // Towards the left front, away from the right rear.
        compare(gains()[0], 100);
        verify(gains()[3] < gains()[1] && gains()[3] < gains()[2], gains());
        compare(item("carPicture").placeText, "front 1, left 1");
    }

    function test_drag_is_one_step() {
        goToRoom("Car");
        var place = item("place");
        var count = Desk.recording.count;
        mousePress(place, place.width / 2, place.height / 2);
        for (var share = 0.5; share < 1; share += 0.02)
            mouseMove(place, place.width * share, place.height * share);
        compare(item("carPicture").shownFade < -12, true);
        compare(Desk.recording.count, count);
        // Beyond the corner: the right rear is all that is left.
        mouseRelease(place, place.width + 20, place.height + 20);
        tryVerify(function () { return Desk.recording.count === count + 1; });
        compare(lastLine(), "AudioControl.setFadeBalance(-15, -15);");
        tryVerify(function () { return gains()[3] === 100 && gains()[0] === 0; });
        tryCompare(item("gain0"), "text", "silent");
        compare(car().fade, -15);
        click("middle");
        tryVerify(function () { return gains()[0] === 100; });
        compare(lastLine(), "AudioControl.setFadeBalance(0, 0);");
        // Where it is already.
        click("middle");
        wait(100);
        compare(Desk.recording.count, count + 2);
    }

    function test_steps_by_number() {
        goToRoom("Car");
        item("balance").forceActiveFocus();
        keyClick(Qt.Key_Down);
        tryVerify(function () { return car().balance === -1; });
        compare(lastLine(), "AudioControl.setFadeBalance(0, -1);");
        tryCompare(item("balance"), "value", -1);
        item("fade").forceActiveFocus();
        keyClick(Qt.Key_Up);
        tryVerify(function () { return car().fade === 1; });
        compare(lastLine(), "AudioControl.setFadeBalance(1, -1);");
    }

    function test_delays() {
        goToRoom("Car");
        item("delay2").forceActiveFocus();
        keyClick(Qt.Key_Up);
        tryVerify(function () { return car().loudspeakers[2].delay === 0.1; });
        compare(lastLine(), "AudioControl.setSpeakerDealy(AudioControl.LeftRear, 0.1);");
        keyClick(Qt.Key_A, Qt.ControlModifier);
        for (var character of "12.5")
            keyClick(character);
        keyClick(Qt.Key_Return);
        tryVerify(function () { return car().loudspeakers[2].delay === 12.5; });
        compare(lastLine(), "AudioControl.setSpeakerDealy(AudioControl.LeftRear, 12.5);");
        perform("AudioControl.setSpeakerDealy(AudioControl.LeftRear, 3);");
        tryCompare(item("delay2"), "value", 30);
        click("expectDelay2");
        tryVerify(function () { return lastLine() === "expect(Platform.speakerDelay(4)).toBe(3);"; });
    }

    function test_filters() {
        goToRoom("Car");
        compare(item("filter5").text, "none");
        perform("AudioControl.setFilter(AudioControl.SixthOutput, {value1: 80, flag: 1, kind: 1, value2: 2, value3: 3, value4: 4});");
        tryVerify(function () { return item("filter5").text !== "none"; });
        compare(item("filter4").text, "none");
    }

    function test_front_only() {
        goToRoom("Car");
        perform("AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);");
        tryCompare(item("frontOnly"), "enabled", true);
        item("frontOnly").forceActiveFocus();
        keyClick(Qt.Key_Space);
        tryVerify(function () { return car().frontRearMode === 0; });
        compare(lastLine(), "AudioControl.setOutputFrontSource(\"main\", \"S+FilePlayer\", true);");
        tryCompare(item("frontOnly"), "checked", true);
        click("expectFrontRear");
        tryVerify(function () { return lastLine() === "expect(Platform.frontRearMode()).toBe(0);"; });
    }

    function test_scrolls_to_the_keyboard() {
        window.width = 1024;
        window.height = 600;
        window.recordingShown = true;
        var room = goToRoom("Car");
        // One column, and the layout has been through it.
        tryVerify(function () { return room.width < 660 && item("delay5").mapToItem(room, 0, 0).y > room.height; });
        for (var name of ["delay5", "fade", "delay4"]) {
            var control = item(name);
            control.forceActiveFocus(Qt.TabFocusReason);
            tryVerify(function () {
                var top = control.mapToItem(room, 0, 0).y;
                return top >= 0 && top + control.height <= room.height;
            }, 5000, name + " is in sight");
        }
        window.recordingShown = false;
    }
}
