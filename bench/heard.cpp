#include "heard.h"

#include "policytext.h"

#include "platform.h"

#include <QtCore/QStringList>

#include <algorithm>
#include <cmath>

namespace
{

// The tracks of sources that reach loudspeakers; the others carry the microphone and inputs.
constexpr const char *audibleTracks[] = {"main", "second", "alternative", "main_im"};

QString soundText(const Heard::Sound &sound, const Heard &before)
{
    QString text = sourceText(sound.source);
    if (sound.isMuted)
        return text + QStringLiteral(" muted");
    text += QLatin1Char(' ') + Heard::levelText(sound.level);
    QStringList remarks;
    if (sound.duckedTo > 0)
        remarks.append(QStringLiteral("ducked to %1 %").arg(sound.duckedTo));
    const auto same = std::find_if(before.sounds.cbegin(), before.sounds.cend(), [&sound](const Heard::Sound &other) {
        return other.track == sound.track && other.source == sound.source;
    });
    if (same != before.sounds.cend() && !same->isMuted && !std::isnan(same->level) && Heard::levelText(same->level) != Heard::levelText(sound.level))
        remarks.append(QStringLiteral("was ") + Heard::levelText(same->level));
    if (sound.track != QLatin1String(audibleTracks[0]))
        remarks.append(QStringLiteral("on track ") + sound.track);
    return remarks.isEmpty() ? text : text + QStringLiteral(" (") + remarks.join(QStringLiteral(", ")) + QLatin1Char(')');
}

} // namespace

double Heard::levelOf(const QString &track, const QString &source)
{
    constexpr double decibelPerTenfold = 20;
    return decibelPerTenfold * std::log10(simulator::Platform::instance()->chip()->effectiveGain(track, source, driversEar));
}

Heard Heard::now()
{
    const simulator::AudioChip *const chip = simulator::Platform::instance()->chip();
    Heard heard;
    for (const char *const name : audibleTracks) {
        const QString track = QLatin1String(name);
        const QString source = chip->activeSource(track);
        if (source.isEmpty() || source == QLatin1String("S+none"))
            continue;
        Sound sound{track, source, levelOf(track, source), chip->isMuted(track), 0};
        // Ducking lowers the main track only, and does not raise it.
        constexpr int unducked = 100;
        if (track == QLatin1String(audibleTracks[0]) && chip->isDucked() && chip->duckingGain() < unducked)
            sound.duckedTo = chip->duckingGain();
        heard.sounds.append(sound);
    }
    return heard;
}

QString Heard::toText(const Heard &before) const
{
    if (sounds.isEmpty())
        return QStringLiteral("nothing");
    QStringList texts;
    for (const Sound &sound : sounds)
        texts.append(soundText(sound, before));
    return texts.join(QStringLiteral(", and "));
}

QString Heard::levelText(double level)
{
    if (std::isnan(level))
        return QStringLiteral("at an unknown level");
    if (!std::isfinite(level))
        return QStringLiteral("silent");
    // Minus zero would show as "-0.0".
    constexpr double shown = 0.05;
    return QString::number(std::abs(level) < shown ? 0.0 : level, 'f', 1) + QStringLiteral(" dB");
}

bool Heard::operator==(const Heard &other) const
{
    return sounds.size() == other.sounds.size()
        && std::equal(sounds.cbegin(), sounds.cend(), other.sounds.cbegin(), [](const Sound &one, const Sound &another) {
               return one.track == another.track && one.source == another.source && one.isMuted == another.isMuted && one.duckedTo == another.duckedTo
                   && levelText(one.level) == levelText(another.level);
           });
}
