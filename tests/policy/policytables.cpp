#include <audiocontroltables.h>
#include <audiodatabasetables.h>
#include <documenttables.h>
#include <policynames.h>
#include <situationtables.h>
#include <zelaudiomanagertables.h>

#include <QtCore/QFile>
#include <QtCore/QMap>
#include <QtCore/QStringList>
#include <QtCore/QTextStream>

#include <algorithm>
#include <cstring>
#include <iterator>

/*
 * Writes the library's fixed tables into a Markdown document:
 *
 *   policy_tables [--check] DOCUMENT
 *
 * With --check nothing is written, and the exit status is 1 when document and library disagree.
 */

namespace
{

namespace policy = ::tables;
namespace store = audio::tables;

static_assert(std::size(policynames::statuses) == std::size(situations::statuses), "each status has a name");
static_assert(std::size(policynames::channels) == situations::highestChannel + 1, "each channel has a name");
static_assert(std::size(policynames::volumeTypes) == store::volumeTypeCount, "each volume type has a name");
static_assert(situations::highestStatus == 19 && situations::highestChannel == 19, "headers and documents say \"0 to 19\"");

QString typeText(int type)
{
    return QStringLiteral("%1 %2").arg(type).arg(QLatin1String(policynames::volumeTypes[type].meaning));
}

QString codeText(const char *text)
{
    return QLatin1Char('`') + QLatin1String(text) + QLatin1Char('`');
}

/// The cells that a status or channel begins with: number, name, meaning.
QStringList nameCells(const policynames::Number &number)
{
    return {QString::number(number.number), codeText(number.name), QLatin1String(number.meaning)};
}

QString row(const QStringList &cells)
{
    return QLatin1String("| ") + cells.join(QLatin1String(" | ")) + QLatin1String(" |");
}

QStringList head(const QStringList &cells)
{
    QStringList rule;
    for (int i = 0; i < cells.size(); ++i)
        rule += QStringLiteral("---");
    return {row(cells), QLatin1Char('|') + rule.join(QLatin1Char('|')) + QLatin1Char('|')};
}

bool isNoSource(const char *qtName)
{
    return std::strcmp(qtName, situations::noSource) == 0;
}

/// The platform's name of a source, and whether its volume is boosted.
QString sourceText(const char *qtName)
{
    if (isNoSource(qtName))
        return QStringLiteral("none");
    const auto *name = std::find_if(std::begin(store::sourceNames), std::end(store::sourceNames), [qtName](const store::SourceName &candidate) {
        return std::strcmp(candidate.qtName, qtName) == 0;
    });
    if (name == std::end(store::sourceNames))
        return QStringLiteral("unknown to the facade");
    const bool boosted = std::any_of(
        std::begin(store::boostedSources), std::end(store::boostedSources), [name](const char *source) { return std::strcmp(source, name->spName) == 0; });
    return codeText(name->spName) + QLatin1String(boosted ? ", boosted" : "");
}

/// A channel as the store knows it.
situations::Channel channelRow(int number)
{
    const auto channel = static_cast<AudioChannel>(number);
    const situations::Channel *const row = situations::rowOf(channel);
    return row ? *row : situations::Channel{channel, ZelAudioTypeMedia, situations::noSource, false};
}

QList<int> channelsOfType(int type)
{
    QList<int> channels;
    for (int channel = 0; channel <= situations::highestChannel; ++channel) {
        if (channelRow(channel).type == type)
            channels.append(channel);
    }
    return channels;
}

bool isAlternative(int type)
{
    return type == ZelAudioTypePrompt || type == ZelAudioTypeHiCarCall;
}

QStringList statusTable()
{
    QStringList lines = head({QStringLiteral("Status"),
                              QStringLiteral("Name"),
                              QStringLiteral("What sounds"),
                              QStringLiteral("Volume applied"),
                              QStringLiteral("To the source"),
                              QStringLiteral("Volume keys work on")});
    for (const situations::Status &status : situations::statuses) {
        lines += row(nameCells(policynames::statuses[status.status])
                     + QStringList{typeText(status.type),
                                   isNoSource(status.source) ? QStringLiteral("of the channel") : sourceText(status.source),
                                   status.keyType == situations::asTheChannelSays ? QStringLiteral("as the channel says") : typeText(status.keyType)});
    }
    return lines;
}

QString keyText(int channel)
{
    if (channel == situations::hiCarChannel)
        return typeText(ZelAudioTypeHiCarCall) + QLatin1String(", in every status");
    return channelRow(channel).type == ZelAudioTypeMedia ? typeText(ZelAudioTypeMedia) : QStringLiteral("nothing");
}

QStringList channelTable()
{
    QStringList lines = head({QStringLiteral("Channel"),
                              QStringLiteral("Name"),
                              QStringLiteral("What plays"),
                              QStringLiteral("Source on the main track"),
                              QStringLiteral("Volume type"),
                              QStringLiteral("Volume keys work on"),
                              QStringLiteral("Sets the equalizer")});
    for (int channel = 0; channel <= situations::highestChannel; ++channel) {
        const situations::Channel info = channelRow(channel);
        lines += row(
            nameCells(policynames::channels[channel])
            + QStringList{
                sourceText(info.source), typeText(info.type), keyText(channel), info.resetsEqualizer ? QStringLiteral("each time") : QStringLiteral("no")});
    }
    return lines;
}

QStringList volumeTable()
{
    QStringList lines = head({QStringLiteral("Volume type"),
                              QStringLiteral("Default"),
                              QStringLiteral("Default with home screen %1").arg(store::largeHomeUiType),
                              QStringLiteral("Pushed at start"),
                              QStringLiteral("Setting it writes"),
                              QStringLiteral("Written again")});
    for (int type = 0; type < store::volumeTypeCount; ++type) {
        QStringList channels;
        const QList<int> numbers = channelsOfType(type);
        for (const int channel : numbers)
            channels += QString::number(channel);
        const bool pushed = std::find(std::begin(policy::volumeTypesPushedAtStart), std::end(policy::volumeTypesPushedAtStart), type)
            != std::end(policy::volumeTypesPushedAtStart);
        QString target = QLatin1String(channels.size() == 1 ? "channel " : "channels ") + channels.join(QLatin1String(", "));
        if (type == ZelAudioTypePrompt)
            target = QStringLiteral("the alternative track");
        if (type == ZelAudioTypeHiCarCall)
            target = QStringLiteral("the HiCar call's stream and the alternative track");
        const bool again = !isAlternative(type) && channels.size() > 1;
        lines += row({typeText(type),
                      QString::number(store::defaultVolumes[type]),
                      QString::number(store::largeHomeUiVolume),
                      pushed ? QStringLiteral("yes") : QStringLiteral("no"),
                      target,
                      again ? QStringLiteral("after %1 ms").arg(policy::deferredVolumeMs) : QStringLiteral("no")});
    }
    return lines;
}

QStringList timerTable()
{
    struct TimerText
    {
        QString time;
        const char *started;
        QString effect;
    };
    const auto status = [](int number) { return QStringLiteral("status %1, %2").arg(QString::number(number), codeText(policynames::statuses[number].name)); };
    const auto milliseconds = [](int time) { return QStringLiteral("%1 ms").arg(time); };
    const TimerText texts[] = {
        {QStringLiteral("count × %1 ms").arg(policy::muteUnitMs), "`setAudioMute(true, count)`", QStringLiteral("unmutes")},
        {milliseconds(policy::deferredVolumeMs), "a volume for two channels or more", QStringLiteral("writes pending volumes again")},
        {milliseconds(policy::customEqualizerRepeatMs), "`adjustCustomEq()`", QStringLiteral("nothing; until then a repeat is ignored")},
        {milliseconds(policy::firstEqualizerMs), "the first channel of the process", QStringLiteral("sets the equalizer once more")},
        {milliseconds(policy::carPlayAlertMs), "`cpDuckAudio()`, reverse gear in", status(AudioStatusCarPlayDuck)},
        {milliseconds(policy::carPlayUnduckMs),
         "`cpUnduckAudio()`, reverse gear out",
         status(AudioStatusCarPlayRestore) + QStringLiteral(", and the main audio back, unless ducked again")},
    };
    static_assert(std::size(texts) == std::size(policynames::timers), "each timer has a purpose");
    QStringList lines = head(
        {QStringLiteral("Timer"), QStringLiteral("In the timeline"), QStringLiteral("Time"), QStringLiteral("Started by"), QStringLiteral("When it runs out")});
    for (std::size_t i = 0; i < std::size(texts); ++i) {
        const policynames::Timer &timer = policynames::timers[i];
        lines += row({codeText(timer.name), QLatin1String(timer.purpose), texts[i].time, QLatin1String(texts[i].started), texts[i].effect});
    }
    return lines;
}

QStringList equalizerTable()
{
    QStringList cells = {QStringLiteral("Type")};
    for (int band = 0; band < store::equalizerBandCount; ++band)
        cells += QString::number(band);
    QStringList lines = head(cells);
    for (const EqBaseData &preset : store::equalizerPresets) {
        cells = QStringList{QString::number(preset.type)};
        for (const float gain : preset.gains)
            cells += preset.type == policy::customEqualizerType ? QStringLiteral("stored") : QString::number(static_cast<double>(gain), 'f', 1);
        lines += row(cells);
    }
    return lines;
}

QStringList microphoneTable()
{
    QStringList stages;
    for (const float stage : policy::microphoneStages)
        stages += QString::number(static_cast<double>(stage));
    return {QStringLiteral("Stages in dB: %1. At most %2 dB are added above a stage while a higher one is left.")
                .arg(stages.join(QLatin1String(", ")))
                .arg(static_cast<double>(policy::largestProgrammableGain))};
}

QMap<QString, QStringList> allTables()
{
    return {
        {QStringLiteral("statuses"), statusTable()},
        {QStringLiteral("channels"), channelTable()},
        {QStringLiteral("volume types"), volumeTable()},
        {QStringLiteral("timers"), timerTable()},
        {QStringLiteral("equalizer"), equalizerTable()},
        {QStringLiteral("microphone"), microphoneTable()},
    };
}

} // namespace

int main(int argc, char **argv)
{
    const bool onlyCheck = argc == 3 && std::strcmp(argv[1], "--check") == 0;
    if (argc != 2 && !onlyCheck) {
        QTextStream(stderr) << "Usage: policy_tables [--check] DOCUMENT" << Qt::endl;
        return 2;
    }
    DocumentTables tables(onlyCheck, "tools/policy-tables");
    tables.renewTables(QFile::decodeName(argv[argc - 1]), allTables());
    return tables.exitStatus();
}
