#include "wavefile.h"

#include <QtCore/QDataStream>
#include <QtCore/QFile>
#include <QtCore/QtEndian>

#include <cmath>

namespace
{

constexpr double range24 = 8388608;
constexpr double range16 = 32768;

} // namespace

WaveFile WaveFile::read(const QString &name)
{
    WaveFile wave;
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return wave;
    const QByteArray bytes = file.readAll();
    if (!bytes.startsWith("RIFF"))
        return wave;
    const auto number16 = [&bytes](int at) { return int(qFromLittleEndian<quint16>(bytes.constData() + at)); };
    const auto number32 = [&bytes](int at) { return int(qFromLittleEndian<quint32>(bytes.constData() + at)); };
    constexpr int header = 8;
    int count = 0;
    for (int at = 12; at + header <= bytes.size();) {
        const QByteArray kind = bytes.mid(at, 4);
        const int size = number32(at + 4);
        const int content = at + header;
        if (kind == "fmt ") {
            count = number16(content + 2);
            if (number32(content + 4) != sampleRate || number16(content + 14) != 24)
                return wave;
        } else if (kind == "data") {
            wave.channels.resize(count);
            const auto *const data = reinterpret_cast<const uchar *>(bytes.constData()) + content;
            for (int i = 0; i + 3 * count <= size && content + i + 3 * count <= bytes.size(); i += 3 * count) {
                for (int channel = 0; channel < count; ++channel) {
                    const uchar *const sample = data + i + 3 * channel;
                    const int value = sample[0] | sample[1] << 8 | static_cast<signed char>(sample[2]) * 65536;
                    wave.channels[channel].append(value / range24);
                }
            }
        }
        at = content + size + size % 2;
    }
    return wave;
}

bool WaveFile::write(const QString &name, const QVector<double> &samples)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QDataStream stream(&file);
    stream.setByteOrder(QDataStream::LittleEndian);
    constexpr int bytesPerSample = 2;
    const auto size = quint32(samples.size() * bytesPerSample);
    stream.writeRawData("RIFF", 4);
    stream << quint32(36 + size);
    stream.writeRawData("WAVEfmt ", 8);
    stream << quint32(16) << quint16(1) << quint16(1) << quint32(sampleRate) << quint32(sampleRate * bytesPerSample) << quint16(bytesPerSample) << quint16(16);
    stream.writeRawData("data", 4);
    stream << size;
    for (const double sample : samples)
        stream << qint16(std::lround(sample * range16));
    return stream.status() == QDataStream::Ok;
}

double WaveFile::level(int channel, double fromSeconds, double toSeconds) const
{
    double sum = 0;
    const auto from = int(fromSeconds * sampleRate);
    const auto to = int(toSeconds * sampleRate);
    for (int i = from; i < to; ++i)
        sum += at(channel, i) * at(channel, i);
    return 10 * std::log10(sum / (to - from));
}
