import QtQuick 2.15
import QzAudio.Desk 1.0

WindowTest {
    name: "Timeline"

    function test_own_drive() {
        perform("AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);");
        perform("wait(2000);");
        perform("AudioPolicy.updateAudioStatus(AudioPolicy.StatusBtRing);");
        perform("wait(2000);");
        goToRoom("Timeline");
        tryVerify(function () { return item("timelinePicture").visible && item("timelineProblem").text === ""; }, 10000, item("timelineProblem").text);
        var picture = item("timelinePicture");
        tryVerify(function () { return picture.width > 0 && picture.height > 0; });
        var moved = 0;
        tryVerify(function () {
            // The drive may be drawn once more meanwhile.
            mouseMove(item("timelineMouse"), picture.width / 2 + ++moved % 8, 60);
            return item("timelineOutcome").text.indexOf("dB") >= 0;
        }, 10000, "why the file player is as loud as it is");
    }

    function test_log_of_a_unit() {
        var scenario = machine.file("unit.js");
        var log = machine.file("unit.log");
        verify(machine.write(scenario, "powerOn();\nAudioPolicy.updateAudioChannel(3);\nwait(3000);\nAudioPolicy.updateAudioStatus(1);\nwait(2000);\n"));
        var path = function (url) { return String(url).replace("file://", ""); };
        machine.bench(["play", "--in-process", "--brief", "--log-to", path(log), path(scenario)]);
        window.openFile(log);
        item("timelineRoom");
        tryVerify(function () { return item("timelineName").text.indexOf("unit.log") >= 0; });
        tryVerify(function () { return item("timelineReplayText").text !== ""; }, 20000, "it was replayed");
        compare(item("timelineProblem").text, "");
        verify(item("timelineReplayText").text.indexOf("iffer") >= 0, item("timelineReplayText").text);
        click("timelineCar");
        tryVerify(function () { return item("timelineName").text.indexOf("unit.log") < 0; });
    }

    function test_no_log() {
        var file = machine.file("letter.txt");
        verify(machine.write(file, "Dear reader,\nthis is no log.\n"));
        window.openFile(file);
        tryVerify(function () { return item("timelineProblem").text.indexOf("no line of the audio library") >= 0; }, 10000);
        click("timelineCar");
        tryCompare(item("timelineProblem"), "text", "");
    }
}
