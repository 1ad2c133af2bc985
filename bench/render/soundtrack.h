#ifndef SOUNDTRACK_H
#define SOUNDTRACK_H

#include <QtCore/QJsonObject>
#include <QtCore/QMap>
#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <array>

/**
 * What a drive sounds like: from when on which sources sound, how loud at each loudspeaker, and what the chip does to them.
 *
 * Times are ms of the drive. It is kept as lines of JSON, which a process writes as things happen and another one reads.
 */
struct SoundTrack
{
    /// Left front, right front, left rear, right rear.
    static constexpr int loudspeakerCount = 4;

    /// A source on a track: "main", "S+FilePlayer".
    using Voice = QPair<QString, QString>;
    using Gains = std::array<double, loudspeakerCount>; ///< linear

    struct Band
    {
        double frequency = 0; ///< Hz
        double quality = 1;
        double gain = 0; ///< dB

        bool isSameFilter(const Band &other) const { return frequency == other.frequency && quality == other.quality; }
        bool operator==(const Band &other) const { return isSameFilter(other) && gain == other.gain; }
    };

    /// How it sounds from a time on, until the next one.
    struct State
    {
        qint64 time = 0;
        QMap<Voice, Gains> voices; ///< those that sound, also those that are silenced
        QVector<Band> bands;
        quint32 equalized = 0; ///< mask of the outputs that have the bands
        bool isLoudnessOn = false;
        Gains delays = {}; ///< ms

        bool isHeardAs(const State &other) const;
        /// Whether the bands act on one of the four.
        bool isEqualized(int loudspeaker) const { return ((equalized >> loudspeaker) & 1U) != 0; }
    };

    struct Heading
    {
        qint64 time = 0;
        QString text;
    };

    /// From one time to another.
    struct Span
    {
        qint64 from = 0;
        qint64 to = 0;

        qint64 length() const { return to - from; }
    };

    QVector<State> states; ///< in order; the first one at 0
    QVector<Heading> headings;
    qint64 duration = 0; ///< ms

    void add(const State &state);

    /// Every voice that sounds at any time, by name.
    QVector<Voice> voices() const;
    /// When it sounds.
    QVector<Span> spansOf(const Voice &voice) const;
    /// When any of these sounds while any of the others does.
    QVector<Span> spansOfBoth(const QVector<Voice> &some, const QVector<Voice> &others) const;
    /// Times at which anything changes, 0 excepted.
    QVector<qint64> changes() const;

    /// A part of it, whose times begin at 0 again.
    SoundTrack part(const Span &span) const;
    /// The same with every stretch without a change no longer than @p longest ms.
    SoundTrack squeezed(qint64 longest) const;
    /// Only some of the voices.
    SoundTrack only(const QVector<Voice> &wanted) const;

    /// @param lines as toJson() gave them @param problem receives what is wrong, empty where nothing is
    static SoundTrack read(const QByteArray &lines, QString &problem);
    static QJsonObject toJson(const State &state);
    static QJsonObject toJson(const Heading &heading);
    static QJsonObject endToJson(qint64 time);

private:
    /// When its state is one of a kind.
    template<typename Condition>
    QVector<Span> spansWhere(const Condition &holds) const;
};

#endif
