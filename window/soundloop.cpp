#include "soundloop.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtCore/QtEndian>

#include <algorithm>
#include <cmath>

namespace
{

/// Bytes at the end of a file of sound that hold its last change for sure.
constexpr qint64 tail = 65536;

} // namespace

std::optional<SoundTrack::State> SoundLoop::lastState(const QString &file)
{
    QFile lines(file);
    if (!lines.open(QIODevice::ReadOnly))
        return {};
    const bool isCut = lines.size() > tail;
    lines.seek(isCut ? lines.size() - tail : 0);
    if (isCut)
        lines.readLine();
    QString problem;
    const SoundTrack track = SoundTrack::read(lines.readAll(), problem);
    return track.states.isEmpty() ? std::nullopt : std::make_optional(track.states.constLast());
}

SoundLoop SoundLoop::render(Rendering &rendering, SoundTrack::State state, QString &problem)
{
    SoundTrack track;
    state.time = 0;
    track.add(state);
    track.duration = milliseconds + overlap;
    const QTemporaryDir folder;
    QFile wave(folder.filePath(QStringLiteral("loop.wav")));
    problem = folder.isValid() ? rendering.write(track, FilterGraph::Listener::TwoEars, wave.fileName(), {}) : folder.errorString();
    if (!problem.isEmpty())
        return {};
    if (!wave.open(QIODevice::ReadOnly)) {
        problem = wave.errorString();
        return {};
    }
    return closed(samplesOf(wave.readAll()), int(FilterGraph::samples(overlap)));
}

QVector<qint16> SoundLoop::samplesOf(const QByteArray &wave)
{
    constexpr int headSize = 12; // "RIFF", its size, "WAVE"
    constexpr int chunkHead = 8; // name and size
    constexpr int bytesPerSample = 3;
    int place = headSize;
    while (place + chunkHead <= wave.size()) {
        const QByteArray name = wave.mid(place, chunkHead / 2);
        const auto size = qint64(qFromLittleEndian<quint32>(wave.constData() + place + chunkHead / 2));
        place += chunkHead;
        if (name == "data") {
            const int count = int(std::min<qint64>(size, wave.size() - place)) / bytesPerSample;
            QVector<qint16> samples(count - count % channels);
            // Of 24 bits the upper sixteen.
            const char *bytes = wave.constData() + place;
            for (qint16 &sample : samples) {
                sample = qFromLittleEndian<qint16>(bytes + 1);
                bytes += bytesPerSample;
            }
            return samples;
        }
        place += int(std::min<qint64>(size + size % 2, wave.size()));
    }
    return {};
}

SoundLoop SoundLoop::closed(const QVector<qint16> &samples, int overlappingFrames)
{
    const int overlapping = overlappingFrames * channels;
    SoundLoop loop;
    if (samples.size() < 2 * overlapping)
        return loop;
    loop.samples = samples.mid(0, samples.size() - overlapping);
    for (int i = 0; i < overlapping; ++i) {
        const int frame = i / channels;
        const double share = double(frame) / overlappingFrames;
        loop.samples[i] = qint16(std::lround(samples.at(i) * share + samples.at(loop.samples.size() + i) * (1 - share)));
    }
    return loop;
}
