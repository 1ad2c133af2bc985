#include "loudnessreport.h"

#include "console.h"
#include "policytext.h"
#include "rendering.h"
#include "sourcesound.h"
#include "viewtext.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QtEndian>

#include <algorithm>
#include <cmath>

namespace
{

QJsonValue number(double value)
{
    return std::isfinite(value) ? QJsonValue(value) : QJsonValue();
}

QJsonObject toObject(const Loudness &loudness)
{
    return {
        {QStringLiteral("integrated"), number(loudness.integrated)},
        {QStringLiteral("shortTerm"), number(loudness.shortTerm)},
        {QStringLiteral("truePeak"), number(loudness.truePeak)},
    };
}

/// What is too short for a figure has none.
QString columns(const Loudness &loudness, qint64 length)
{
    constexpr int width = 10;
    const auto column = [length](double value, qint64 needed) { return (length < needed ? QStringLiteral("-") : Loudness::text(value)).rightJustified(width); };
    return column(loudness.integrated, Loudness::shortest) + column(loudness.shortTerm, Loudness::shortTermLength) + column(loudness.truePeak, 0);
}

/// The bytes of the samples in a WAV file, from its chunk of data on.
bool seekSamples(QFile &file)
{
    constexpr qint64 riffHeader = 12;
    constexpr int chunkHeader = 8;
    if (!file.seek(riffHeader))
        return false;
    while (true) {
        const QByteArray header = file.read(chunkHeader);
        if (header.size() < chunkHeader)
            return false;
        if (header.startsWith("data"))
            return true;
        const auto size = qFromLittleEndian<quint32>(header.constData() + 4);
        if (!file.seek(file.pos() + size + size % 2))
            return false;
    }
}

} // namespace

LoudnessReport::LoudnessReport(const SoundTrack &track, Rendering &rendering)
    : m_track(track)
    , m_rendering(rendering)
{
}

qint64 LoudnessReport::clippedSamples(const QString &file, QString &problem)
{
    QFile sound(file);
    if (!sound.open(QIODevice::ReadOnly) || !seekSamples(sound)) {
        problem = QStringLiteral("%1 cannot be read again: %2").arg(file, sound.errorString());
        return 0;
    }
    constexpr int sampleBytes = 3;
    constexpr qint64 portion = 65536LL * sampleBytes;
    constexpr int highest = 0x7FFFFF;
    constexpr int lowest = 0x800000; // as it stands there
    qint64 clipped = 0;
    for (QByteArray bytes = sound.read(portion); bytes.size() >= sampleBytes; bytes = sound.read(portion)) {
        const auto *const data = reinterpret_cast<const uchar *>(bytes.constData());
        for (int i = 0; i + sampleBytes <= bytes.size(); i += sampleBytes) {
            const int value = data[i] | data[i + 1] << 8 | data[i + 2] << 16;
            clipped += value == highest || value == lowest ? 1 : 0;
        }
    }
    return clipped;
}

QString LoudnessReport::measure(const QString &loudspeakers)
{
    m_file = loudspeakers;
    QString problem;
    m_clipped = clippedSamples(m_file, problem);
    if (problem.isEmpty())
        problem = measureSections();
    return problem.isEmpty() ? measureForegrounds() : problem;
}

Loudness LoudnessReport::measureSpan(const SoundTrack::Span &span, QString &problem) const
{
    const QStringList input{QStringLiteral("-ss"),
                            QStringLiteral("%1ms").arg(span.from),
                            QStringLiteral("-t"),
                            QStringLiteral("%1ms").arg(span.length()),
                            QStringLiteral("-i"),
                            QStringLiteral("file:") + QFileInfo(m_file).absoluteFilePath()};
    return Loudness::measure(input, FilterGraph::twoEars(), {}, problem);
}

QString LoudnessReport::measureSections()
{
    QString problem;
    m_whole = measureSpan({0, m_track.duration}, problem);
    QVector<SoundTrack::Heading> headings = m_track.headings;
    if (headings.isEmpty() || headings.constFirst().time > 0)
        headings.prepend({0, QStringLiteral("(the beginning)")});
    for (int i = 0; i < headings.size() && problem.isEmpty(); ++i) {
        const qint64 end = i + 1 < headings.size() ? headings.at(i + 1).time : m_track.duration;
        Section section{{headings.at(i).time, end}, headings.at(i).text, {}};
        // What takes no time cannot be heard.
        if (section.span.length() == 0)
            continue;
        section.loudness = measureSpan(section.span, problem);
        m_sections.append(section);
    }
    return problem;
}

QString LoudnessReport::measureForegrounds()
{
    const QVector<SoundTrack::Voice> voices = m_track.voices();
    for (const SoundTrack::Voice &voice : voices) {
        if (!SourceSound::isForeground(voice))
            continue;
        const auto spans = m_track.spansOf(voice);
        for (const SoundTrack::Span &span : spans) {
            if (span.length() < Loudness::shortest)
                continue;
            Foreground foreground{voice, span, 0, {}, {}};
            QString problem = measureForeground(foreground);
            if (!problem.isEmpty())
                return problem;
            m_foregrounds.append(foreground);
        }
    }
    std::stable_sort(
        m_foregrounds.begin(), m_foregrounds.end(), [](const Foreground &one, const Foreground &other) { return one.span.from < other.span.from; });
    return {};
}

QString LoudnessReport::measureForeground(Foreground &foreground) const
{
    QString problem;
    const SoundTrack heard = m_track.part(foreground.span);
    QVector<SoundTrack::Voice> others = heard.voices();
    others.removeAll(foreground.voice);
    if (others.isEmpty()) {
        foreground.loudness = measureSpan(foreground.span, problem);
        foreground.above = -Loudness::silence;
        return problem;
    }
    foreground.loudness = m_rendering.measure(heard.only({foreground.voice}), problem);
    if (!problem.isEmpty())
        return problem;
    const Loudness rest = m_rendering.measure(heard.only(others), problem);
    foreground.above = foreground.loudness.integrated - rest.integrated;
    if (std::isfinite(rest.integrated)) {
        for (const SoundTrack::Voice &other : qAsConst(others))
            foreground.over.append(sourceText(other.second));
    }
    return problem;
}

QString LoudnessReport::verdictOf(const Foreground &foreground)
{
    if (!std::isfinite(foreground.loudness.integrated))
        return QStringLiteral("silent");
    if (foreground.over.isEmpty())
        return QStringLiteral("alone");
    return foreground.above < leastAbove ? QStringLiteral("too quiet") : foreground.above > mostAbove ? QStringLiteral("too loud") : QStringLiteral("good");
}

QString LoudnessReport::toText(const Foreground &foreground) const
{
    QString text = ViewText::time(foreground.span.from) + sourceText(foreground.voice.second);
    const QString verdict = verdictOf(foreground);
    if (foreground.over.isEmpty() || verdict == QLatin1String("silent"))
        return text + QStringLiteral(": %1\n").arg(verdict);
    const QString distance = QString::number(foreground.above, 'f', 1);
    const QString range = QStringLiteral("good from %1 to %2").arg(leastAbove).arg(mostAbove);
    return text + (foreground.above < 0 ? QStringLiteral(" ") : QStringLiteral(" +")) + distance + QStringLiteral(" LU over ")
        + foreground.over.join(QStringLiteral(" and ")) + QStringLiteral(": ")
        + (verdict == QLatin1String("good") ? range : verdict + QStringLiteral(", ") + range) + QLatin1Char('\n');
}

QString LoudnessReport::toText() const
{
    constexpr int columnsWidth = 30;
    QString text = QStringLiteral("  time      ") + QStringLiteral("      LUFS  max. 3 s peak dBTP\n");
    for (const Section &section : m_sections) {
        text += ViewText::time(section.span.from) + columns(section.loudness, section.span.length()) + QStringLiteral("  ")
            + Console::wrapped(Console::printable(section.heading), 0, ViewText::column + columnsWidth + 2).trimmed() + QLatin1Char('\n');
    }
    text += QStringLiteral("  whole     ") + columns(m_whole, m_track.duration) + QStringLiteral("  samples clipped at the loudspeakers: %1\n").arg(m_clipped);
    if (!m_foregrounds.isEmpty())
        text += QStringLiteral("\n  Prompts and calls\n");
    for (const Foreground &foreground : m_foregrounds)
        text += toText(foreground);
    return text;
}

QByteArray LoudnessReport::toJson() const
{
    QJsonArray sections;
    for (const Section &section : m_sections) {
        QJsonObject object = toObject(section.loudness);
        object.insert(QStringLiteral("from"), double(section.span.from));
        object.insert(QStringLiteral("to"), double(section.span.to));
        object.insert(QStringLiteral("heading"), section.heading);
        sections.append(object);
    }
    QJsonArray foregrounds;
    for (const Foreground &foreground : m_foregrounds) {
        QJsonObject object = toObject(foreground.loudness);
        object.insert(QStringLiteral("from"), double(foreground.span.from));
        object.insert(QStringLiteral("to"), double(foreground.span.to));
        object.insert(QStringLiteral("track"), foreground.voice.first);
        object.insert(QStringLiteral("source"), foreground.voice.second);
        object.insert(QStringLiteral("above"), number(foreground.above));
        object.insert(QStringLiteral("over"), QJsonArray::fromStringList(foreground.over));
        object.insert(QStringLiteral("verdict"), verdictOf(foreground));
        foregrounds.append(object);
    }
    QJsonObject whole = toObject(m_whole);
    whole.insert(QStringLiteral("clippedSamples"), double(m_clipped));
    const QJsonObject all{{QStringLiteral("whole"), whole}, {QStringLiteral("sections"), sections}, {QStringLiteral("promptsAndCalls"), foregrounds}};
    return Console::harmlessJson(QJsonDocument(all).toJson(QJsonDocument::Compact)) + '\n';
}
