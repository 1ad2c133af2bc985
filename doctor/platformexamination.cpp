#include "platformexamination.h"

#include "childprocess.h"
#include "loadedfile.h"

#include <settingsprovider.h>
#include <spaudiosetting.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QStringList>

#include <algorithm>
#include <iterator>

namespace
{

using audio::SPAudioSetting::App;
using audio::SPAudioSetting::Source;
using audio::SPAudioSetting::Volume;

constexpr char track[] = "main";
// The platform is asked as the library asks it.
constexpr char anySource[] = "S+FilePlayer"; // what it plays does not matter, only that the platform knows it
constexpr int inputPort = 1;
constexpr int microphoneTestCount = 8; // a platform may fill as many, whatever it is told

struct Objects
{
    App *app;
    Source *source;
    Volume *volume;
};

/// A call that changes nothing: what it gives, and its result as a code. 0 is success.
struct CallRow
{
    const char *name;
    int (*call)(const Objects &objects, QString &given);
    bool canRefuse; ///< what gives no code is answered by anything
};

int masterVolume(const Objects &objects, QString &given)
{
    unsigned char volume = 0;
    const int code = objects.volume->getMasterVolume(&volume, 0);
    given = QString::number(volume);
    return code;
}

int trackVolume(const Objects &objects, QString &given)
{
    unsigned char volume = 0;
    const int code = objects.volume->getTrackVolume(track, anySource, &volume);
    given = QString::number(volume);
    return code;
}

int microphoneGain(const Objects &objects, QString &given)
{
    float first = 0;
    float second = 0;
    const int code = objects.volume->getMicAnalogGain(&first, &second);
    given = QStringLiteral("%1, %2").arg(static_cast<double>(first)).arg(static_cast<double>(second));
    return code;
}

int calibrationGain(const Objects &objects, QString &given)
{
    int first = 0;
    int second = 0;
    const int code = objects.volume->getMicCalibrationGain(&first, &second);
    given = QStringLiteral("%1, %2").arg(first).arg(second);
    return code;
}

int activeSource(const Objects &objects, QString &given)
{
    // None may play: null is an answer.
    given = QString::fromLocal8Bit(objects.source->getActiveSource(track));
    return 0;
}

int selectedPin(const Objects &objects, QString &given)
{
    unsigned char pin = 0;
    const int code = objects.source->getInputSelectPin(inputPort, &pin);
    given = QString::number(pin);
    return code;
}

int alternativeNumber(const Objects &objects, QString &given)
{
    given = QString::number(objects.source->queryAlterNumber("alternative")); // a number, no result
    return 0;
}

int microphoneTest(const Objects &objects, QString &given)
{
    unsigned short values[microphoneTestCount] = {};
    const int code = objects.app->getMicrophoneTest(&values[0], microphoneTestCount);
    given = QString::number(values[0]);
    return code;
}

int downlinkDelay(const Objects &objects, QString &given)
{
    short delay = 0;
    const int code = objects.app->getDownlinkDelayEstimation(&delay);
    given = QString::number(delay);
    return code;
}

int homeUiType(const Objects &, QString &given)
{
    vd::SettingsProvider *const provider = vd::SettingsProvider::instance();
    if (!provider)
        return -1;
    given = QString::number(provider->getHomeUiType());
    return 0;
}

constexpr CallRow calls[] = {
    {"Volume.getMasterVolume", masterVolume, true},
    {"Volume.getTrackVolume", trackVolume, true},
    {"Volume.getMicAnalogGain", microphoneGain, true},
    {"Volume.getMicCalibrationGain", calibrationGain, true},
    {"Source.getActiveSource", activeSource, false},
    {"Source.getInputSelectPin", selectedPin, true},
    {"Source.queryAlterNumber", alternativeNumber, false},
    {"App.getMicrophoneTest", microphoneTest, true},
    {"App.getDownlinkDelayEstimation", downlinkDelay, true},
    {"SettingsProvider.getHomeUiType", homeUiType, false},
};
constexpr int lastRow = static_cast<int>(std::size(calls));
constexpr double nsPerMs = 1e6;

QByteArray line(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

/// In the process of its own, from the row @p first on. What begins is told before it is done: the last one tells where it ended.
void answer(int first, const ChildProcess::Tell &tell)
{
    const auto begin = [&tell](int row, const char *name) { tell(line({{QStringLiteral("begins"), QLatin1String(name)}, {QStringLiteral("row"), row}})); };
    begin(lastRow, "create");
    const Objects objects{audio::SPAudioSetting::createApp(), audio::SPAudioSetting::createSource(), audio::SPAudioSetting::createVolume()};
    QJsonArray missing;
    if (!objects.app)
        missing.append(QStringLiteral("App"));
    if (!objects.source)
        missing.append(QStringLiteral("Source"));
    if (!objects.volume)
        missing.append(QStringLiteral("Volume"));
    tell(line({{QStringLiteral("missing"), missing}}));
    for (int row = first; missing.isEmpty() && row < lastRow; ++row) {
        begin(row, calls[row].name);
        QElapsedTimer clock;
        clock.start();
        QString given;
        const int code = calls[row].call(objects, given);
        tell(line({{QStringLiteral("call"), QLatin1String(calls[row].name)},
                   {QStringLiteral("code"), code},
                   {QStringLiteral("gives"), given},
                   {QStringLiteral("ms"), static_cast<double>(clock.nsecsElapsed()) / nsPerMs}}));
    }
    begin(lastRow, "destroy");
    if (objects.app)
        audio::SPAudioSetting::destroy(objects.app);
    if (objects.source)
        audio::SPAudioSetting::destroy(objects.source);
    if (objects.volume)
        audio::SPAudioSetting::destroy(objects.volume);
}

Finding linkedPlatform()
{
    const QString file = fileOfCode(reinterpret_cast<const void *>(static_cast<Volume *(*)()>(&audio::SPAudioSetting::createVolume)));
    const bool isSimulated = file.contains(QLatin1String("libqzaudio_simulator"));
    const QJsonObject facts{{QStringLiteral("file"), file}, {QStringLiteral("simulated"), isSimulated}};
    if (isSimulated)
        return {Finding::Area::Platform,
                Finding::Grade::Note,
                QStringLiteral("linked"),
                file + QStringLiteral(" is the simulated platform: it makes no sound"),
                facts};
    if (file.isEmpty())
        return {Finding::Area::Platform,
                Finding::Grade::Good,
                QStringLiteral("linked"),
                QStringLiteral("by functions that the SDK's headers compile into each program; ldd tells the libraries"),
                facts};
    return {Finding::Area::Platform, Finding::Grade::Good, QStringLiteral("linked"), file, facts};
}

/// What all processes told.
class Answers
{
public:
    void ask(int patienceMs)
    {
        // A call that does not come back ends its process; those behind it are made in the next one.
        for (int row = 0; row < lastRow;) {
            const ChildProcess::Outcome outcome = ChildProcess::run([row](const ChildProcess::Tell &tell) { answer(row, tell); }, patienceMs);
            const QList<QByteArray> lines = outcome.told.split('\n');
            QJsonObject begun;
            for (const QByteArray &told : lines) {
                const QJsonObject object = QJsonDocument::fromJson(told).object();
                if (object.contains(QLatin1String("begins")))
                    begun = object;
                if (object.contains(QLatin1String("missing")))
                    m_missing = object.value(QLatin1String("missing")).toVariant().toStringList();
                if (object.contains(QLatin1String("call")))
                    note(object);
            }
            if (outcome.isWhole)
                return;
            m_broken.append(QStringLiteral("%1 %2").arg(begun.value(QLatin1String("begins")).toString(QStringLiteral("asking")), outcome.ending));
            row = begun.value(QLatin1String("row")).toInt(lastRow) + 1;
        }
    }

    Findings findings() const
    {
        const QJsonObject facts{{QStringLiteral("calls"), m_calls},
                                {QStringLiteral("refused"), QJsonArray::fromStringList(m_refused)},
                                {QStringLiteral("broken"), QJsonArray::fromStringList(m_broken)}};
        if (!m_missing.isEmpty())
            return {wrong("objects",
                          QStringLiteral("it gives no %1").arg(m_missing.join(QLatin1String(", no "))),
                          {{QStringLiteral("missing"), QJsonArray::fromStringList(m_missing)}})};
        const QString count = QStringLiteral("%1 of %2 calls that change nothing are answered").arg(m_calls.size() - m_refused.size()).arg(lastRow);
        if (!m_broken.isEmpty())
            return {wrong("answers", m_broken.join(QStringLiteral(", ")) + QStringLiteral("; ") + count, facts)};
        const auto refusable = std::count_if(std::cbegin(calls), std::cend(calls), [](const CallRow &row) { return row.canRefuse; });
        if (m_refused.size() >= refusable)
            return {wrong("answers", QStringLiteral("it refuses every call: ") + m_refused.join(QStringLiteral(", ")), facts)};
        if (!m_refused.isEmpty())
            return {{Finding::Area::Platform,
                     Finding::Grade::Note,
                     QStringLiteral("answers"),
                     count + QStringLiteral("; ") + m_refused.join(QStringLiteral(", ")),
                     facts}};
        return {{Finding::Area::Platform, Finding::Grade::Good, QStringLiteral("answers"), count, facts}};
    }

private:
    static Finding wrong(const char *subject, const QString &text, const QJsonObject &facts)
    {
        return {Finding::Area::Platform, Finding::Grade::Wrong, QLatin1String(subject), text, facts};
    }

    void note(const QJsonObject &call)
    {
        m_calls.append(call);
        const int code = call.value(QLatin1String("code")).toInt();
        if (code != 0)
            m_refused.append(QStringLiteral("%1 gives %2").arg(call.value(QLatin1String("call")).toString()).arg(code));
    }

    QStringList m_missing;
    QJsonArray m_calls;
    QStringList m_refused;
    QStringList m_broken;
};

} // namespace

Findings examinePlatform(int patienceMs)
{
    Answers answers;
    answers.ask(patienceMs);
    return Findings{linkedPlatform()} + answers.findings();
}
