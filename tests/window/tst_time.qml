import QtQuick 2.15
import QzAudio.Desk 1.0

WindowTest {
    name: "Time"

    function test_step_to_the_next_timer_and_back() {
        perform("AudioPolicy.setAudioMute(true, 4);");
        click("stepButton");
        tryVerify(function () { return Desk.now === 200 && !snapshot("drive").muted; });
        perform("AudioPolicy.setVolume(AudioPolicy.Media, 7, true);");
        tryVerify(function () { return snapshot("drive").volumes[0] === 7; });
        click("undoButton");
        tryVerify(function () { return !Desk.replaying && snapshot("drive").volumes[0] === 20; });
        compare(Desk.now, 200);
        click("redoButton");
        tryVerify(function () { return snapshot("drive").volumes[0] === 7; });

        var clock = item("clock");
        mouseClick(clock);
        keyClick(Qt.Key_A, Qt.ControlModifier);
        for (var character of "0:00.100")
            keyClick(character);
        keyClick(Qt.Key_Return);
        tryVerify(function () { return !Desk.replaying && Desk.now === 100; });
        verify(snapshot("drive").muted);
        compare(snapshot("drive").muteLeft, 100);
    }

    function test_keys() {
        window.contentItem.forceActiveFocus();
        keyClick(Qt.Key_F5);
        compare(Desk.speed, 1);
        tryVerify(function () { return Desk.now > 100; });
        keyClick(Qt.Key_F5, Qt.ControlModifier);
        compare(Desk.speed, 10);
        tryVerify(function () { return Desk.now > 2000; });
        keyClick(Qt.Key_F5);
        compare(Desk.speed, 0);
    }

    function test_platform_that_takes_its_time() {
        perform("Platform.setCallDuration(500);");
        Desk.speed = 1;
        // Frames go on, as many as ever, while the car waits for its platform.
        var frames = 0;
        var count = function () { ++frames; };
        window.frameSwapped.connect(count);
        Desk.perform("AudioPolicy.setVolume(AudioPolicy.Telephony, 3, true);");
        tryVerify(function () { return Desk.now >= 500; });
        tryVerify(function () { window.update(); return frames > 20; }, 2000, "the window is at full rate");
        window.frameSwapped.disconnect(count);
    }
}
