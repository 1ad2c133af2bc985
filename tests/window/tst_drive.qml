import QtQuick 2.15
import QzAudio.Desk 1.0

WindowTest {
    name: "Drive"

    function test_call_during_a_prompt_with_reverse_gear() {
        goToRoom("Drive");
        perform("AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);");
        click("carPlayPromptBegins");
        tryVerify(function () { return snapshot("drive").ducked; });
        click("stepButton");
        click("stepButton");
        tryVerify(function () { return snapshot("drive").status === 10; }, 5000, "the prompts' volume is applied after 1000 ms");
        compare(Desk.now, 1000);
        click("reverseIn");
        tryVerify(function () { return snapshot("drive").reverseGear; });
        click("callComes");
        tryVerify(function () { return snapshot("drive").status === 1 && snapshot("drive").channel === 11; });
        tryVerify(function () { return item("keyType").text.indexOf("ring") >= 0; });
        verify(item("keyReason").text.indexOf("BtRing") >= 0, item("keyReason").text);
        click("callAnswered");
        tryVerify(function () { return snapshot("drive").status === 2; });
        click("callEnds");
        tryVerify(function () { return snapshot("drive").status === 0 && snapshot("drive").channel === 3; }, 5000, "what played before the call is back");
        click("reverseOut");
        tryVerify(function () { return !snapshot("drive").reverseGear; });
        Desk.speed = 10;
        tryVerify(function () { return !snapshot("drive").ducked; });
        Desk.speed = 0;
        verify(lines().indexOf("Platform.setReverseGear(true);") > 0, lines());
    }

    function test_knob() {
        goToRoom("Drive");
        perform("AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);");
        tryVerify(function () { return item("keyVolume").text === "20"; });
        click("volumeUp");
        tryVerify(function () { return snapshot("drive").volumes[0] === 21; });
        compare(lastLine(), "AudioPolicy.updateCurrentAudioVolume(true);");
        var knob = item("volumeKnob");
        mouseWheel(knob, knob.width / 2, knob.height / 2, 0, -120);
        tryVerify(function () { return snapshot("drive").volumes[0] === 20; });
        knob.forceActiveFocus();
        keyClick(Qt.Key_Down);
        tryVerify(function () { return snapshot("drive").volumes[0] === 19; });
        compare(lastLine(), "AudioPolicy.updateCurrentAudioVolume(false);");
    }

    function test_timed_mute() {
        goToRoom("Drive");
        click("timedMute");
        tryVerify(function () { return snapshot("drive").muteLeft === 2000; });
        tryVerify(function () { return item("muteLeft").visible; });
        click("muteExpect");
        tryVerify(function () { return lastLine() === "expect(AudioPolicy.muted).toBe(true);"; });
        click("stepButton");
        click("stepButton");
        tryVerify(function () { return Desk.now === 2000 && !snapshot("drive").muted; });
    }

    function test_ignition() {
        goToRoom("Drive");
        click("ignitionOff");
        tryVerify(function () { return snapshot("drive").on === false; });
        click("ignitionOn");
        tryVerify(function () { return snapshot("drive").on === true; });
    }
}
