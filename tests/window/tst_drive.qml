import QtQuick 2.15
import QtQuick.Controls 2.15
import QzAudio.Desk 1.0

WindowTest {
    id: test

    name: "Drive"

    function init() {
        Desk.startAnew();
        Desk.speed = 0;
        tryVerify(function () { return snapshot("drive").on === true && Desk.recording.doneCount === 1; }, 10000, "the car is on");
        goToRoom("Drive");
        tryVerify(function () { return item("heard").text === snapshot("drive").heard; });
    }

    function since(count) {
        return lines().slice(count);
    }

    /// All items below one, a repeater's too.
    function itemsBelow(parent) {
        var found = [];
        for (var i = 0; i < parent.children.length; ++i)
            found = found.concat([parent.children[i]], itemsBelow(parent.children[i]));
        return found;
    }

    function test_situations_data() {
        return [
            { tag: "callComes", status: 1, channel: 11, ducked: false },
            { tag: "callAnswered", status: 2, channel: 12, ducked: false },
            { tag: "callEnds", status: 0, channel: 13, ducked: false },
            { tag: "carPlayPromptBegins", status: 0, channel: 13, ducked: true },
            { tag: "carPlayPromptEnds", status: 0, channel: 13, ducked: false },
            { tag: "androidAutoPromptBegins", status: 0, channel: 13, ducked: true },
            { tag: "androidAutoPromptEnds", status: 0, channel: 13, ducked: false },
            { tag: "carLifePromptBegins", status: 0, channel: 13, ducked: true },
            { tag: "carLifePromptEnds", status: 0, channel: 13, ducked: false },
            { tag: "reverseIn", status: 0, channel: 13, ducked: true },
            { tag: "reverseOut", status: 0, channel: 13, ducked: false },
        ];
    }

    function test_situations(data) {
        perform("AudioPolicy.updateAudioChannel(AudioPolicy.ChannelDiscPlayer);");
        tryVerify(function () { return snapshot("drive").channel === 13; });
        var count = Desk.recording.count;
        click(data.tag);
        tryVerify(function () { return Desk.recording.doneCount > count; });
        tryVerify(function () { return snapshot("drive").status === data.status; });
        tryVerify(function () { return snapshot("drive").channel === data.channel; });
        tryVerify(function () { return snapshot("drive").ducked === data.ducked; });
    }

    function test_call_during_a_prompt_with_reverse_gear() {
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

    function test_ignition() {
        click("ignitionOff");
        tryVerify(function () { return snapshot("drive").on === false; });
        tryCompare(item("ignition"), "text", "ignition off");
        compare(item("volumeKnob").enabled, false);
        click("ignitionOn");
        tryVerify(function () { return snapshot("drive").on === true; });
        compare(lines(), ["powerOn();", "powerOff();", "powerOn();"]);
    }

    function test_channel_and_status() {
        var box = item("channelBox");
        box.forceActiveFocus();
        keyClick(Qt.Key_Down);
        tryVerify(function () { return snapshot("drive").channel === 1; });
        keyClick(Qt.Key_Down);
        tryVerify(function () { return snapshot("drive").channel === 2; });
        tryCompare(item("channelMeaning"), "text", "Bluetooth audio");
        compare(box.displayText, "2 BtAudio");
        item("statusBox").forceActiveFocus();
        keyClick(Qt.Key_Down);
        tryVerify(function () { return snapshot("drive").status === 1; });
        tryCompare(item("statusMeaning"), "text", "an incoming call over Bluetooth");
        compare(lastLine(), "AudioPolicy.updateAudioStatus(AudioPolicy.StatusBtRing);");
        // The keys work on the ring volume now, whatever the channel.
        tryCompare(item("keyType"), "text", "of ring");
        click("statusExpect");
        tryVerify(function () { return lastLine() === "expect(AudioPolicy.status).toBe(AudioPolicy.StatusBtRing);"; });
    }

    function test_knob() {
        perform("AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);");
        var knob = item("volumeKnob");
        tryCompare(knob, "enabled", true);
        tryCompare(knob, "value", 20);
        var count = Desk.recording.count;
        knob.forceActiveFocus();
        keyClick(Qt.Key_Up);
        keyClick(Qt.Key_Up);
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Right);
        tryVerify(function () { return snapshot("drive").volumes[0] === 22; });
        tryCompare(knob, "value", 22);
        mouseWheel(knob, knob.width / 2, knob.height / 2, 0, -120);
        mouseWheel(knob, knob.width / 2, knob.height / 2, 0, -120);
        mouseWheel(knob, knob.width / 2, knob.height / 2, 0, 120);
        tryVerify(function () { return snapshot("drive").volumes[0] === 21; });
        tryCompare(knob, "value", 21);
        click("volumeDown");
        tryVerify(function () { return snapshot("drive").volumes[0] === 20; });
        click("volumeUp");
        tryVerify(function () { return snapshot("drive").volumes[0] === 21; });
        tryCompare(item("keyVolume"), "text", "21");
        var up = "AudioPolicy.updateCurrentAudioVolume(true);";
        var down = "AudioPolicy.updateCurrentAudioVolume(false);";
        compare(since(count), [up, up, down, up, down, down, up, down, up]);
    }

    function test_knob_turned_by_mouse() {
        perform("AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);");
        var knob = item("volumeKnob");
        tryCompare(knob, "value", 20);
        var count = Desk.recording.count;
        mousePress(knob, knob.width - 16, knob.height / 2);
        for (var y = knob.height / 2; y > 14; y -= 4)
            mouseMove(knob, knob.width - 16, y);
        mouseRelease(knob, knob.width - 16, 14);
        tryVerify(function () { return Desk.recording.count > count && snapshot("drive").volumes[0] < 20; });
        tryVerify(function () { return knob.value === snapshot("drive").volumes[0]; });
        for (var line of since(count))
            verify(line.indexOf("AudioPolicy.updateCurrentAudioVolume(") === 0, line);
    }

    function test_nothing_for_the_keys() {
        tryCompare(item("keyVolume"), "text", "\u2013");
        compare(item("volumeKnob").enabled, false);
        var count = Desk.recording.count;
        click("volumeUp");
        tryVerify(function () { return Desk.recording.count === count + 1; });
        compare(snapshot("drive").volumes[0], 20);
    }

    function test_volumes() {
        var slider = item("volume3");
        tryCompare(slider, "value", 20);
        slider.forceActiveFocus();
        keyClick(Qt.Key_Left);
        tryVerify(function () { return snapshot("drive").volumes[3] === 19; });
        compare(lastLine(), "AudioPolicy.setVolume(AudioPolicy.Ring, 19, true);");
        tryCompare(slider, "value", 19);
        var count = Desk.recording.count;
        mousePress(slider, slider.width * 0.76, slider.height / 2);
        for (var x = 0.74; x > 0.2; x -= 0.05)
            mouseMove(slider, slider.width * x, slider.height / 2);
        mouseRelease(slider, slider.width * 0.2, slider.height / 2);
        tryVerify(function () { return snapshot("drive").volumes[3] < 12; });
        // One step for all of the way.
        compare(Desk.recording.count, count + 1);
        tryVerify(function () { return slider.value === snapshot("drive").volumes[3]; });
        tryCompare(item("volumeText3"), "text", String(slider.value));
        click("volumeExpect3");
        tryVerify(function () { return lastLine() === "expect(AudioPolicy.volumes[AudioPolicy.Ring]).toBe(" + slider.value + ");"; });
    }

    function test_mute() {
        item("mute").forceActiveFocus();
        keyClick(Qt.Key_Space);
        tryVerify(function () { return snapshot("drive").muted === true; });
        tryCompare(item("mute"), "checked", true);
        click("attenuation");
        tryVerify(function () { return snapshot("drive").muted === false; });
        tryCompare(item("mute"), "checked", false);
        compare(since(1), ["AudioPolicy.setMute(true);", "AudioPolicy.triggerAtt();"]);
    }

    function test_timed_mute() {
        tryVerify(function () { return snapshot("drive").timers !== undefined; });
        item("timedMuteDuration").value = 4000;
        click("timedMute");
        tryVerify(function () { return snapshot("drive").muteLeft === 4000; });
        compare(lastLine(), "AudioPolicy.setAudioMute(true, 80);");
        tryCompare(item("muteLeft"), "text", "4.00 s left");
        tryCompare(item("muteShare"), "value", 1);
        click("muteExpect");
        tryVerify(function () { return lastLine() === "expect(AudioPolicy.muted).toBe(true);"; });
        // Until the mute's own timer, the others have run.
        while (snapshot("drive").timers.length > 1) {
            var next = Desk.nextTimer;
            click("stepButton");
            tryVerify(function () { return Desk.now >= next; });
            wait(100);
        }
        perform("AudioPolicy.setMute(false);");
        tryVerify(function () { return item("muteLeft").text.indexOf("unmutes whatever is muted then") > 0; });
        var left = snapshot("drive").muteLeft;
        verify(left > 0 && left < 4000, left);
        tryCompare(item("muteShare"), "value", left / 4000);
        click("stepButton");
        tryVerify(function () { return snapshot("drive").muteLeft === -1; });
        tryCompare(item("muteLeft"), "text", "No timed mute runs.");
    }

    function test_scenario_drives() {
        perform("AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);");
        Desk.openBundled("commute");
        compare(Desk.scenario, "commute");
        click("fastButton");
        tryVerify(function () { return Desk.now > 6000; }, 10000);
        click("stopButton");
        var knob = item("volumeKnob");
        tryVerify(function () { return snapshot("drive").channel === 3 && knob.enabled; });
        var volume = snapshot("drive").volumes[0];
        tryCompare(knob, "value", volume);
        knob.forceActiveFocus();
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Down);
        tryVerify(function () { return Desk.message.indexOf("take over first") > 0; });
        tryCompare(knob, "value", volume);
        item("channelBox").forceActiveFocus();
        keyClick(Qt.Key_Down);
        compare(item("channelBox").currentIndex, 3);
        item("mute").forceActiveFocus();
        keyClick(Qt.Key_Space);
        compare(item("mute").checked, false);
        Desk.message = "";
        Desk.takeOver();
    }

    function test_tab_reaches_all() {
        perform("AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);");
        tryCompare(item("volumeKnob"), "enabled", true);
        item("channelBox").forceActiveFocus();
        var reached = {};
        for (var i = 0; i < 80; ++i) {
            var focused = window.activeFocusItem;
            for (var parent = focused; parent; parent = parent.parent)
                reached[parent.objectName] = true;
            keyClick(Qt.Key_Tab);
        }
        for (var name of ["channelBox", "channelExpect", "statusBox", "mute", "attenuation", "timedMute", "timedMuteDuration", "callComes", "callAnswered", "callEnds",
                          "carLifePromptEnds", "reverseIn", "ignitionOff", "volumeDown", "volumeKnob", "volumeUp", "volume0", "volume5", "volumeExpect5"])
            verify(reached[name], name);
        item("callComes").forceActiveFocus();
        keyClick(Qt.Key_Return);
        tryVerify(function () { return snapshot("drive").status === 1; });
        item("callAnswered").forceActiveFocus();
        keyClick(Qt.Key_Space);
        tryVerify(function () { return snapshot("drive").status === 2; });
    }

    function test_nothing_is_cut_data() {
        return [
            { tag: "narrow", recording: true, width: 1024 },
            { tag: "smallest", recording: false, width: 1024 },
            { tag: "wide", recording: true, width: 1900 },
        ];
    }

    function test_nothing_is_cut(data) {
        perform("AudioPolicy.updateAudioStatus(AudioPolicy.StatusCarPlayDuck);");
        perform("AudioPolicy.cpDuckAudio(0, 20);");
        perform("AudioPolicy.setAudioMute(true, 80);");
        window.recordingShown = data.recording;
        window.width = data.width;
        var room = item("driveRoom");
        tryVerify(function () { return Math.abs(room.width - (data.width - 120 - (data.recording ? 260 : 0))) < 60; }, 5000, "the room is " + room.width);
        wait(200);
        for (var each of itemsBelow(item("driveScroll").contentItem)) {
            if (!each.visible || each.width === 0)
                continue;
            var place = each.mapToItem(room, 0, 0);
            if (each.objectName !== "" || each instanceof Label)
                verify(place.x >= 0 && place.x + each.width <= room.width + 1, each.objectName + " " + each.text + " ends at " + (place.x + each.width) + " of " + room.width);
            if (each instanceof Label)
                verify(!each.truncated && each.contentWidth <= each.width + 1, each.text);
            if (each instanceof Button)
                verify(each.contentItem.implicitWidth <= each.availableWidth + 1, each.text + " has " + each.availableWidth + " of " + each.contentItem.implicitWidth);
        }
        window.recordingShown = false;
        window.width = 1024;
    }
}
