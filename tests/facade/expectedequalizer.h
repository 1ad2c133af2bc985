#ifndef EXPECTEDEQUALIZER_H
#define EXPECTEDEQUALIZER_H

#include <QtCore/QByteArray>
#include <QtCore/QDataStream>
#include <QtCore/QList>
#include <QtCore/QStringList>

/// What equalizer presets and records must look like, written down once more and from nothing in the library.
namespace expected
{

inline const QList<float> flat = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};

// clang-format off
inline const QList<QList<float>> modeGains = {
    { 4.8F,  4.3F,  3.8F, 3.4F, 3.0F, 2.7F, 2.5F, 0.5F, -4.0F, -3.0F, 0.0F, 1.1F, 2.2F,  2.7F,  3.2F,  3.8F},
    { 7.0F,  5.5F,  4.0F, 3.5F, 3.0F, 2.0F, 1.5F, 0.5F, -5.0F,  0.5F, 2.0F, 3.0F, 5.0F,  4.0F,  6.0F,  5.0F},
    { 5.0F,  4.5F,  3.0F, 1.0F, 2.0F, 4.0F, 5.0F, 0.0F, -2.0F, -2.0F, 3.0F, 4.0F, 5.0F,  5.5F,  5.5F,  2.0F},
    { 6.0F,  5.0F,  4.0F, 0.0F, 0.0F, 0.0F, 3.0F, 4.0F,  4.0F,  2.0F, 0.0F, 0.0F, 5.0F,  5.0F,  5.0F,  5.0F},
    {-3.0F, -2.0F,  0.0F, 3.0F, 4.0F, 5.0F, 5.5F, 5.5F,  5.5F,  4.0F, 3.0F, 3.0F, 0.0F, -3.0F,  5.0F,  4.0F},
    {-4.0F, -5.0F, -5.0F, 3.0F, 4.0F, 6.0F, 6.0F, 5.0F,  5.0F,  5.5F, 2.0F, 1.0F, 0.0F,  0.0F, -4.0F, -5.0F},
    flat,
};

// Without their fractions, never rounded.
inline const QList<QList<int>> wholeModeGains = {
    { 4,  4,  3, 3, 3, 2, 2, 0, -4, -3, 0, 1, 2,  2,  3,  3},
    { 7,  5,  4, 3, 3, 2, 1, 0, -5,  0, 2, 3, 5,  4,  6,  5},
    { 5,  4,  3, 1, 2, 4, 5, 0, -2, -2, 3, 4, 5,  5,  5,  2},
    { 6,  5,  4, 0, 0, 0, 3, 4,  4,  2, 0, 0, 5,  5,  5,  5},
    {-3, -2,  0, 3, 4, 5, 5, 5,  5,  4, 3, 3, 0, -3,  5,  4},
    {-4, -5, -5, 3, 4, 6, 6, 5,  5,  5, 2, 1, 0,  0, -4, -5},
    { 0,  0,  0, 0, 0, 0, 0, 0,  0,  0, 0, 0, 0,  0,  0,  0},
};

inline const QList<quint16> shortCodes = {10,  18,  26,   35,   44,   52,    58,  33};
inline const QList<quint16> shortHertz = {50, 200, 400, 1000, 3000, 7000, 15000, 800};

inline const QList<quint16> sixteenHertz = {50, 80, 125, 200, 315, 500, 630, 800, 1000, 2000, 3100, 4000, 5000, 6300, 16000, 20000};
inline const QList<float> sixteenQ = {1, 1, 1, 1.5F, 1.5F, 1.5F, 1.5F, 2, 2, 2, 2, 2, 2, 1, 1, 1};
inline const QList<quint16> tenHertz = {30, 60, 125, 250, 500, 1000, 2000, 4000, 8000, 16000, 20000, 20000, 20000, 20000, 20000, 20000};
inline const QList<float> tenQ = {1, 1, 1, 1.5F, 1.5F, 2, 2, 2, 1, 1, 1, 1, 1, 1, 1, 1};
// clang-format on

inline QString text(float number)
{
    return QString::number(double(number));
}

template<typename Number>
QString listText(const QList<Number> &numbers)
{
    QStringList texts;
    for (const Number number : numbers)
        texts.append(text(float(number)));
    return QLatin1Char('[') + texts.join(QLatin1String(", ")) + QLatin1Char(']');
}

inline QString shortCall(const QList<quint16> &frequencies, const QList<float> &gains, int result)
{
    return QStringLiteral("App.setEqParameter({channel: 65535, frequency: %1, gain: %2, type: [3, 3, 3, 3, 3, 3, 3, 3]}) -> %3")
        .arg(listText(frequencies), listText(gains.mid(0, 8)))
        .arg(result);
}

/// Sixteen bands: the platform always gets as many. Bands 16 to 19 are all zero and left out of the text, as zero reserved fields are.
inline QString extendedCall(const QList<quint16> &frequencies, const QList<float> &qualities, const QList<float> &gains, int result)
{
    QStringList bands;
    for (int i = 0; i < 16; ++i) {
        bands.append(QStringLiteral("{type: 3, frequency: %1, gain: %2, q: %3}").arg(frequencies.at(i)).arg(text(gains.value(i)), text(qualities.at(i))));
    }
    return QStringLiteral("App.setExtEqParameter({channel: 65535, band: [%1]}) -> %2").arg(bands.join(QLatin1String(", "))).arg(result);
}

/// Bytes as they lie in the platform's memory.
class Bytes
{
public:
    Bytes()
    {
        m_stream.setByteOrder(QDataStream::LittleEndian);
        m_stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
    }

    template<typename Number>
    Bytes &operator<<(Number number)
    {
        m_stream << number;
        return *this;
    }
    template<typename Number>
    Bytes &operator<<(const QList<Number> &numbers)
    {
        for (const Number number : numbers)
            m_stream << number;
        return *this;
    }
    QByteArray toHex() const { return m_bytes.toHex(); }

private:
    QByteArray m_bytes;
    QDataStream m_stream{&m_bytes, QIODevice::WriteOnly};
};

inline QByteArray shortRecord(const QList<quint16> &frequencies, const QList<float> &gains)
{
    Bytes bytes;
    bytes << quint32(0xFFFF) << frequencies << gains.mid(0, 8);
    for (int band = 0; band < 8; ++band)
        bytes << quint16(3);
    return bytes.toHex();
}

inline QByteArray extendedRecord(const QList<quint16> &frequencies, const QList<float> &qualities, const QList<float> &gains)
{
    Bytes bytes;
    bytes << quint32(0xFFFF);
    for (int band = 0; band < 16; ++band) {
        bytes << quint32(3) << frequencies.at(band) << quint16(0) << gains.value(band) << qualities.at(band);
        bytes << quint32(0) << quint32(0) << quint32(0);
    }
    for (int band = 16; band < 20; ++band)
        bytes << quint32(0) << quint16(0) << quint16(0) << 0.0F << 0.0F << quint32(0) << quint32(0) << quint32(0);
    return bytes.toHex();
}

inline QList<float> widened(const QList<int> &numbers)
{
    QList<float> result;
    for (const int number : numbers)
        result.append(float(number));
    return result;
}

template<typename Number>
QList<Number> repeated(Number number, int count)
{
    QList<Number> numbers;
    for (int i = 0; i < count; ++i)
        numbers.append(number);
    return numbers;
}

/// @p count zeroes but for one band.
template<typename Number>
QList<Number> oneBand(int band, Number gain, int count)
{
    QList<Number> gains = repeated(Number(0), count);
    gains[band] = gain;
    return gains;
}

inline const QList<float> slopingGains = {-12, -11.5F, -8, -4, -2.25F, -1, -0.5F, 0, 0.5F, 1, 2.25F, 4, 8, 10, 11.5F, 12};
inline const QList<int> slopingWholeGains = {-12, -10, -8, -6, -5, -4, -2, 0, 1, 2, 4, 5, 6, 8, 10, 12};
inline const QList<int> slopingTenGains = {-12, -8, -4, -2, -1, 1, 2, 4, 8, 12};

} // namespace expected

#endif
