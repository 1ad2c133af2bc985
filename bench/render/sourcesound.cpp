#include "sourcesound.h"

#include "loudness.h"
#include "soundrecorder.h"
#include "soundtool.h"

#include "explain/policyrules.h"

#include <algorithm>
#include <cmath>

namespace
{

const QString wave = QStringLiteral("pcm_f32le");

/// What is spoken.
QString wordsOf(SourceSound::Kind kind)
{
    if (kind == SourceSound::Kind::Navigation)
        return QStringLiteral("In two hundred metres, turn left. Then keep to the right, and follow the road for three kilometres.");
    if (kind == SourceSound::Kind::Assistant)
        return QStringLiteral("Here is what I found. The weather stays fine this afternoon, with some clouds in the evening.");
    return QStringLiteral("Hello, it is me. I am still at the office, and will be home a little later. Do we need anything from the shop?");
}

/// How a source is filtered: speech over a telephone is limited to its band.
QString bandOf(SourceSound::Kind kind)
{
    return kind == SourceSound::Kind::Telephone ? QStringLiteral("highpass=f=300:poles=2,lowpass=f=3400:poles=2,") : QString();
}

bool isSpoken(SourceSound::Kind kind)
{
    return kind == SourceSound::Kind::Telephone || kind == SourceSound::Kind::Assistant || kind == SourceSound::Kind::Navigation;
}

/// Of a source always the same, so that it sounds alike in every drive.
int numberOf(const QString &source)
{
    int number = 0;
    for (int i = 0; i < source.size(); ++i)
        number += source.at(i).unicode() * (i + 1);
    return number;
}

/// A chord over a beat, with some noise, in the key of a source.
QString music(int number)
{
    constexpr double lowestKey = 196;
    constexpr int keys = 12; // in an octave
    constexpr double third = 1.25992;
    constexpr double fifth = 1.49831;
    constexpr int low = 4;
    const double key = lowestKey * std::exp2(double(number % keys) / keys);
    const auto tone = [](double hertz) { return QStringLiteral("sine=f=%1:r=48000:d=16").arg(hertz, 0, 'f', 2); };
    return QStringLiteral("%1,tremolo=f=0.5:d=0.4[a];%2,tremolo=f=1:d=0.6[b];%3[c];%4,tremolo=f=2:d=0.9[d];"
                          "anoisesrc=c=pink:r=48000:d=16:a=0.25:seed=%5,tremolo=f=4:d=0.9[e];[a][b][c][d][e]amix=inputs=5:normalize=0")
        .arg(tone(key), tone(key * third), tone(key * fifth), tone(key / low))
        .arg(number + 1);
}

QString recipeOf(SourceSound::Kind kind, int number)
{
    switch (kind) {
    case SourceSound::Kind::Ringtone:
        return QStringLiteral("aevalsrc=exprs='0.3*lt(mod(t,3),1.2)*(sin(2*PI*t*if(lt(mod(t,0.1),0.05),880,1108.73)))':s=48000:d=3");
    case SourceSound::Kind::ReverseBeeps:
        return QStringLiteral("aevalsrc=exprs='0.3*lt(mod(t,0.8),0.3)*sin(2*PI*1000*t)':s=48000:d=8");
    default:
        return music(number);
    }
}

QStringList quietly()
{
    return {QStringLiteral("-hide_banner"),
            QStringLiteral("-nostdin"),
            QStringLiteral("-nostats"),
            QStringLiteral("-loglevel"),
            QStringLiteral("error"),
            QStringLiteral("-y")};
}

QString inOneChannel(const QStringList &input, const QString &filters, const QString &folder, const QString &name)
{
    return SoundTool::ffmpeg()
        .run(quietly() + input
                 + QStringList{QStringLiteral("-vn"),
                               QStringLiteral("-af"),
                               filters
                                   + QStringLiteral("aformat=sample_rates=48000:channel_layouts=mono,aeval=val(0)+%1").arg(QLatin1String(SourceSound::unheard)),
                               QStringLiteral("-c:a"),
                               wave,
                               name},
             folder)
        .problem;
}

} // namespace

SourceSound::SourceSound(const QMap<QString, QString> &files)
    : m_files(files)
{
}

SourceSound::Kind SourceSound::kindOf(const SoundTrack::Voice &voice)
{
    if (voice.second == SoundRecorder::reverseGear())
        return Kind::ReverseBeeps;
    if (voice.first == QLatin1String("alternative"))
        return Kind::Navigation;
    constexpr int telephonyType = 2;
    constexpr int ringType = 3;
    constexpr int speechType = 4;
    constexpr int hiCarCallType = 5;
    switch (PolicyRules::typeOfSource(voice.second)) {
    case telephonyType:
    case hiCarCallType:
        return Kind::Telephone;
    case ringType:
        return Kind::Ringtone;
    case speechType:
        return Kind::Assistant;
    default:
        return Kind::Music;
    }
}

bool SourceSound::isForeground(const SoundTrack::Voice &voice)
{
    return kindOf(voice) != Kind::Music;
}

QString SourceSound::absence(const QVector<SoundTrack::Voice> &voices) const
{
    QString missing = SoundTool::ffmpeg().absence();
    if (!missing.isEmpty())
        return missing;
    const bool speaks = std::any_of(
        voices.cbegin(), voices.cend(), [this](const SoundTrack::Voice &voice) { return isSpoken(kindOf(voice)) && !m_files.contains(voice.second); });
    return speaks ? SoundTool::espeak().absence() : QString();
}

QString SourceSound::write(const SoundTrack::Voice &voice, const QString &folder, const QString &name) const
{
    const QString file = m_files.value(voice.second);
    if (file.isEmpty())
        return make(voice, folder, name);
    const QString problem = inOneChannel({QStringLiteral("-i"), QStringLiteral("file:") + file}, {}, folder, name);
    return problem.isEmpty() ? QString() : QStringLiteral("%1 cannot be read as sound: %2").arg(file, problem);
}

QString SourceSound::make(const SoundTrack::Voice &voice, const QString &folder, const QString &name)
{
    const Kind kind = kindOf(voice);
    const QString raw = QStringLiteral("raw-") + name;
    QString problem;
    if (isSpoken(kind))
        problem = speak(kind, folder, raw);
    else
        problem
            = SoundTool::ffmpeg()
                  .run(quietly() + QStringList{QStringLiteral("-filter_complex"), recipeOf(kind, numberOf(voice.second)), QStringLiteral("-c:a"), wave, raw},
                       folder)
                  .problem;
    if (!problem.isEmpty())
        return problem;
    const QStringList input{QStringLiteral("-i"), raw};
    const Loudness measured = Loudness::measure(input, bandOf(kind) + QStringLiteral("anull"), folder, problem);
    if (!problem.isEmpty())
        return problem;
    const QString level = QStringLiteral("volume=%1dB:precision=float,").arg(loudness - measured.integrated, 0, 'f', 2);
    const QString pause = isSpoken(kind) ? QStringLiteral("apad=pad_dur=0.8,") : QString();
    return inOneChannel(input, bandOf(kind) + level + pause, folder, name);
}

QString SourceSound::writeSilence(const QString &folder, const QString &name)
{
    return inOneChannel(
        {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"), QStringLiteral("anullsrc=r=48000:cl=mono:d=10")}, {}, folder, name);
}

QString SourceSound::speak(Kind kind, const QString &folder, const QString &name)
{
    return SoundTool::espeak().run({QStringLiteral("-v"), QStringLiteral("en"), QStringLiteral("-w"), name, wordsOf(kind)}, folder).problem;
}
