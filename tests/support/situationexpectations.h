#ifndef SITUATIONEXPECTATIONS_H
#define SITUATIONEXPECTATIONS_H

#include <QtCore/QList>
#include <QtCore/QString>

#include <array>

/// What a status and a channel have to mean, for all tests that look at it: written out here, and not the library's own tables.
namespace expectation
{

struct Source
{
    const char *name; ///< the applications'
    const char *platformName;
    bool boosted;
};

constexpr Source noSource = {"S+none_APP", "S+none", false};
constexpr Source filePlayer = {"S+FilePlayer_APP", "S+FilePlayer", false};
constexpr Source discPlayer = {"S+DiscPlayer_APP", "S+DiscPlayer", false};
constexpr Source btAudio = {"BT_AUDIO_Track", "BT_AUDIO_Track", false};
constexpr Source btRingtone = {"S+BtRingtone_APP", "S+BtRingtone", true};
constexpr Source btPhone = {"S+BtPcmPhone", "S+BtPcmPhone", true};
constexpr Source auxIn = {"S+AuxIn_APP", "S+AuxIn", true};
constexpr Source microphone = {"S+Mic_APP", "S+Mic", false};
constexpr Source carPlayMedia = {"S+CarPlayMedia_APP", "S+CarPlayMedia", false};
constexpr Source carPlayAlert = {"S+CarPlayAlert_APP", "S+CarPlayAlert", true};
constexpr Source carPlayTelephony = {"S+CarPlayTelephony_APP", "S+CarPlayTelephony", true};
constexpr Source carPlaySpeech = {"S+CarPlaySpeech_APP", "S+CarPlaySpeech", true};
constexpr Source carPlayDefault = {"S+CarPlayDefault_APP", "S+CarPlayDefault", false};
constexpr Source androidAuto = {"S+AndroidAuto_APP", "S+AndroidAuto", false};
constexpr Source iPod = {"S+IPod_APP", "S+IPod", false};
constexpr Source carLife = {"S+CarLife_APP", "S+CarLife", false};
constexpr Source webLink = {"S+WebLink_APP", "S+WebLink", false};
constexpr Source airPlay = {"s+AirPlayMedia_APP", "S+AirPlayMedia", false};
constexpr Source iosMirror = {"S+IosMirror_APP", "S+IosMirror", false};

inline bool isNone(const Source &source)
{
    return QLatin1String(source.name) == QLatin1String(noSource.name);
}

constexpr int typeCount = 6;

/// In keyType: what the channel says.
constexpr int asTheChannel = -1;
/// In keyType: the volume keys do nothing.
constexpr int none = -1;

struct Status
{
    int type; ///< of its volume
    Source source; ///< noSource: that of the channel
    int keyType; ///< of the volume that the keys change
};

constexpr std::array<Status, 20> statuses = {{
    {0, noSource, asTheChannel}, // 0
    {3, btPhone, 3}, // 1
    {2, btPhone, 2}, // 2
    {2, btPhone, 2}, // 3
    {0, btPhone, asTheChannel}, // 4
    {3, carPlayAlert, 3}, // 5
    {2, carPlayTelephony, 2}, // 6
    {0, noSource, asTheChannel}, // 7
    {4, carPlaySpeech, asTheChannel}, // 8
    {0, carPlaySpeech, asTheChannel}, // 9
    {1, noSource, 1}, // 10
    {0, noSource, asTheChannel}, // 11
    {4, androidAuto, asTheChannel}, // 12
    {0, androidAuto, asTheChannel}, // 13
    {1, androidAuto, 1}, // 14
    {0, androidAuto, asTheChannel}, // 15
    {4, carLife, asTheChannel}, // 16
    {0, carLife, asTheChannel}, // 17
    {1, carLife, 1}, // 18
    {0, carLife, asTheChannel}, // 19
}};

struct Channel
{
    int type; ///< of its volume
    Source source;
    int keyType; ///< where the status leaves it to the channel
    bool setsEqualizer; ///< each time it is reported
};

constexpr std::array<Channel, 20> channels = {{
    {1, noSource, none, false}, // 0
    {0, noSource, 0, false}, // 1
    {0, btAudio, 0, false}, // 2
    {0, filePlayer, 0, true}, // 3
    {0, iosMirror, 0, false}, // 4
    {0, carPlayMedia, 0, true}, // 5
    {3, carPlayAlert, none, false}, // 6
    {2, carPlayTelephony, none, false}, // 7
    {4, carPlaySpeech, none, false}, // 8
    {0, carPlayDefault, 0, false}, // 9
    {0, androidAuto, 0, true}, // 10
    {3, btRingtone, none, false}, // 11
    {2, btPhone, none, false}, // 12
    {0, discPlayer, 0, false}, // 13
    {0, noSource, 0, false}, // 14
    {0, auxIn, 0, false}, // 15
    {0, noSource, 0, false}, // 16
    {0, carLife, 0, true}, // 17
    {0, noSource, 5, false}, // 18, HiCar
    {0, airPlay, 0, false}, // 19
}};

constexpr int statusCount = int(statuses.size());
constexpr int channelCount = int(channels.size());

struct Stream
{
    Source source;
    int type; ///< of the volume that it starts with
};

constexpr std::array<Stream, 18> streams = {{
    {filePlayer, 0},
    {discPlayer, 0},
    {btAudio, 0},
    {btRingtone, 3},
    {btPhone, 2},
    {auxIn, 0},
    {microphone, 0},
    {carPlayMedia, 0},
    {carPlayAlert, 3},
    {carPlayTelephony, 2},
    {carPlaySpeech, 4},
    {carPlayDefault, 0},
    {androidAuto, 0},
    {iPod, 0},
    {carLife, 0},
    {webLink, 0},
    {airPlay, 0},
    {iosMirror, 0},
}};

inline const Status &status(int number)
{
    return statuses.at(static_cast<std::size_t>(number));
}

inline const Channel &channel(int number)
{
    return channels.at(static_cast<std::size_t>(number));
}

/// In ascending order.
inline QList<int> channelsOfType(int type)
{
    QList<int> numbers;
    for (int number = 0; number < channelCount; ++number) {
        if (channel(number).type == type)
            numbers.append(number);
    }
    return numbers;
}

} // namespace expectation

#endif
