import QtQuick 2.15
import QzAudio.Desk 1.0

WindowTest {
    name: "Recording"

    function test_saved_and_opened_again() {
        perform("AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);");
        click("stepButton");
        tryVerify(function () { return Desk.now === 500; });
        perform("AudioPolicy.setVolume(AudioPolicy.Media, 9, true);");
        perform("expect(AudioPolicy.getVolume(AudioPolicy.Media)).toBe(9);");
        verify(Desk.recording.unsaved);
        var file = machine.file("a drive.js");
        verify(Desk.save(file));
        verify(!Desk.recording.unsaved);
        var verdict = machine.bench(["play", "--in-process", "--brief", String(file).replace("file://", "").replace("%20", " ")]);
        verify(verdict.indexOf("1 expectation held in 0.500 s") >= 0, verdict);

        var recorded = lines();
        Desk.startAnew();
        window.openFile(file);
        tryVerify(function () { return !Desk.replaying && Desk.recording.count === recorded.length; });
        compare(lines(), recorded);
        Desk.goTo(500);
        tryVerify(function () { return !Desk.replaying && snapshot("drive").volumes[0] === 9; });
    }

    function test_line_that_is_typed() {
        window.recordingShown = true;
        window.contentItem.forceActiveFocus();
        keyClick(Qt.Key_L, Qt.ControlModifier);
        tryCompare(item("lineField"), "activeFocus", true);
        for (var character of "AudioPolicy.setMute(true);")
            keyClick(character);
        keyClick(Qt.Key_Return);
        tryVerify(function () { return snapshot("drive").muted === true; });
        compare(lastLine(), "AudioPolicy.setMute(true);");
        window.recordingShown = false;
    }

    function test_scenario_taken_over() {
        Desk.openBundled("commute");
        compare(Desk.scenario, "commute");
        click("fastButton");
        tryVerify(function () { return Desk.now > 3000; }, 10000);
        click("stopButton");
        click("takeOverButton");
        tryCompare(Desk, "scenario", "");
        var count = Desk.recording.count;
        verify(count > 1);
        perform("AudioPolicy.setMute(true);");
        compare(Desk.recording.count, count + 1);
    }

    function test_scenario_that_never_ends() {
        var file = machine.file("endless.js");
        verify(machine.write(file, "powerOn();\nfor (;;) {}\n"));
        window.openFile(file);
        tryVerify(function () { return Desk.scenario === "endless" && Desk.recording.count === 1; });
        click("takeOverButton");
        tryCompare(Desk, "scenario", "");
        perform("AudioPolicy.setMute(true);");
        compare(lines(), ["powerOn();", "AudioPolicy.setMute(true);"]);
        verify(Desk.save(machine.file("nothing at stake.js")));
        window.openFile(file);
        tryCompare(Desk, "scenario", "endless");
        click("stopScenarioButton");
        tryVerify(function () { return Desk.scenario === "" && snapshot("drive").on === true; });
    }

    function test_full_disk() {
        perform("AudioPolicy.setMute(true);");
        verify(!Desk.save("file:///dev/full"));
        tryVerify(function () { return item("messageBanner").visible; });
        verify(item("messageBannerText").text.indexOf("/dev/full cannot be saved") >= 0, item("messageBannerText").text);
        verify(Desk.recording.unsaved);
        click("dismissMessageButton");
        tryCompare(item("messageBanner"), "visible", false);
    }
}
