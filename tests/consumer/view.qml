import QtQml 2.15
import QzAudio 1.0
import QzAudio.Simulator 1.0

// A unit without settings: the volume key goes one step up from 20, and the settings are saved.
QtObject {
    Component.onCompleted: {
        AudioPolicy.updateAudioChannel(3); // the file player
        AudioPolicy.updateCurrentAudioVolume(true);
        const volume = AudioPolicy.volumes[AudioPolicy.Media];
        const heard = Platform.trackVolume("main", "S+FilePlayer");
        console.log("volume", volume, "heard with", heard);
        Qt.callLater(Qt.exit, volume === 21 && heard === 84 ? 0 : 1);
    }
}
