#ifndef ARGUMENTS_H
#define ARGUMENTS_H

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <array>

namespace lives
{

constexpr std::size_t mostArguments = 3;

/// What one argument of an operation may be: a number, or one that stands for a name or a gain.
struct ArgumentKind
{
    int least;
    int most;
    std::array<int, 8> edges; ///< what every second argument is
    QString (*text)(int); ///< as a script writes it
};

namespace kind
{
extern const ArgumentKind none; ///< always 0
extern const ArgumentKind flag;
extern const ArgumentKind status;
extern const ArgumentKind channel;
extern const ArgumentKind volumeType;
extern const ArgumentKind volume; ///< of the store
extern const ArgumentKind byte;
extern const ArgumentKind number; ///< of no special meaning
extern const ArgumentKind muteCount; ///< times 50 ms
extern const ArgumentKind equalizerType;
extern const ArgumentKind band; ///< 0 to 15: another one stops the process
extern const ArgumentKind index;
extern const ArgumentKind steps; ///< of the custom equalizer
extern const ArgumentKind gain; ///< quarters of a decibel
extern const ArgumentKind delay;
extern const ArgumentKind micVolume;
extern const ArgumentKind position; ///< of fade and balance
extern const ArgumentKind tag;
extern const ArgumentKind track;
extern const ArgumentKind playingTrack; ///< one that can be asked for what plays on it
extern const ArgumentKind source; ///< as applications name it
extern const ArgumentKind platformSource;
extern const ArgumentKind outputChannel;
extern const ArgumentKind count; ///< of a list that should have 6, 10 or 16 values
extern const ArgumentKind milliseconds;
extern const ArgumentKind faultCode;
extern const ArgumentKind fault; ///< an operation of the platform that can fail
extern const ArgumentKind writingFault; ///< one that writes something
extern const ArgumentKind objectKind;
extern const ArgumentKind nth;
extern const ArgumentKind client; ///< of audio focus
extern const ArgumentKind hint;
extern const ArgumentKind setting; ///< a key of the settings file
extern const ArgumentKind storedValue; ///< a text in the settings file
extern const ArgumentKind systemCall; ///< that a process is killed at
} // namespace kind

/// The arguments of one operation, as numbers and as what they stand for.
class Arguments
{
public:
    explicit Arguments(const std::array<int, mostArguments> &numbers)
        : m_numbers(numbers)
    {
    }

    int operator[](std::size_t place) const { return m_numbers[place]; }
    bool flag(std::size_t place) const { return m_numbers[place] != 0; }
    quint8 byte(std::size_t place) const { return static_cast<quint8>(m_numbers[place]); }
    float gain(std::size_t place) const { return static_cast<float>(m_numbers[place]) / 4; }
    template<typename Enumeration>
    Enumeration as(std::size_t place) const
    {
        return static_cast<Enumeration>(m_numbers[place]);
    }

private:
    std::array<int, mostArguments> m_numbers;
};

// What the numbers stand for.
const char *trackName(int number);
const char *sourceName(int number);
const char *platformSourceName(int number);
QString faultName(int number);
QString writingFaultName(int number);
QString objectKindName(int number);
const char *clientId(int number);
QString settingKey(int number); ///< "Volume/3"
QString storedText(int number);

constexpr int clientCount = 5;
constexpr int settingCount = 30;

/// A settings file with @p count keys from @p firstSetting on.
QByteArray settingsText(int firstSetting, int firstValue, int count);

} // namespace lives

#endif
