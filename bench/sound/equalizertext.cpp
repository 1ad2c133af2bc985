#include "equalizertext.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>
#include <QtCore/QTextCodec>

#include <algorithm>
#include <cmath>

using EqualizerResponse::Band;
using EqualizerResponse::Point;
using EqualizerResponse::Shelf;

namespace
{

constexpr double highestGain = 60; // dB; beyond it something else was meant
constexpr double lowestQ = 0.01;
constexpr double highestQ = 1000;
constexpr double lowestFrequency = 1; // Hz
constexpr double highestListed = 1e6; // Hz
constexpr double usualShelfQ = 0.7071; // the steepest that does not overshoot

struct KindName
{
    const char *name;
    enum Kind { Peak, LowShelf, HighShelf, NotDoable } kind;
};

constexpr KindName kindNames[] = {
    {"pk", KindName::Peak},
    {"peq", KindName::Peak},
    {"ls", KindName::LowShelf},
    {"lsc", KindName::LowShelf},
    {"lsq", KindName::LowShelf},
    {"hs", KindName::HighShelf},
    {"hsc", KindName::HighShelf},
    {"hsq", KindName::HighShelf},
    {"lp", KindName::NotDoable},
    {"lpq", KindName::NotDoable},
    {"hp", KindName::NotDoable},
    {"hpq", KindName::NotDoable},
    {"bp", KindName::NotDoable},
    {"no", KindName::NotDoable},
    {"ap", KindName::NotDoable},
};

const KindName *kindOf(const QString &word)
{
    const auto *const found
        = std::find_if(std::begin(kindNames), std::end(kindNames), [&word](const KindName &known) { return word == QLatin1String(known.name); });
    return found == std::end(kindNames) ? nullptr : found;
}

/// With a point or a comma before the decimals; empty for anything else.
std::optional<double> numberOf(QString word)
{
    static const QRegularExpression form(QStringLiteral("^[-+]?([0-9]+([.,][0-9]*)?|[.,][0-9]+)$"));
    if (!form.match(word).hasMatch())
        return {};
    return word.replace(QLatin1Char(','), QLatin1Char('.')).toDouble();
}

/// "20,000" is twenty for some and twenty thousand for others.
bool isAmbiguous(const QString &word)
{
    static const QRegularExpression form(QStringLiteral("^[1-9][0-9]{0,2},[0-9]{3}$"));
    return form.match(word).hasMatch();
}

QString ambiguity(const QString &word)
{
    return QStringLiteral("%1 Hz can be %2 Hz or %3 Hz").arg(word).arg(*numberOf(word)).arg(QString(word).remove(QLatin1Char(',')));
}

bool isGain(double gain)
{
    return std::abs(gain) <= highestGain;
}

bool isListed(double frequency)
{
    return frequency >= lowestFrequency && frequency <= highestListed;
}

QString shortNumber(double number)
{
    return QString::number(number, 'g', 6);
}

/// The words of a line in small letters; a unit that stands right behind its number is a word of its own.
QStringList wordsOf(const QString &text)
{
    static const QRegularExpression unitAtNumber(QStringLiteral("([0-9.,])(khz|hz|db|oct)\\b"));
    return text.toLower().replace(QChar(0x2212), QLatin1Char('-')).replace(unitAtNumber, QStringLiteral("\\1 \\2")).simplified().split(QLatin1Char(' '));
}

double levelOf(const EqualizerText::List &list, double frequency)
{
    const auto above = std::find_if(list.cbegin(), list.cend(), [frequency](const Point &point) { return point.frequency >= frequency; });
    if (above == list.cbegin())
        return list.first().level;
    if (above == list.cend())
        return list.last().level;
    const Point &below = *(above - 1);
    const double share = std::log(frequency / below.frequency) / std::log(above->frequency / below.frequency);
    return below.level + share * (above->level - below.level);
}

} // namespace

/// Reads line after line into a text.
class EqualizerTextReader
{
public:
    EqualizerText read(const QString &text)
    {
        static const QRegularExpression lineEnd(QStringLiteral("\r\n|\n|\r"));
        const QStringList lines = text.split(lineEnd);
        for (const QString &line : lines) {
            ++m_line;
            const QString problem = readLine(line.simplified());
            if (!problem.isEmpty())
                m_text.problems.append({m_line, problem});
        }
        return m_text;
    }

private:
    // Each gives what is wrong with the line; empty where it counts.

    QString readLine(const QString &line)
    {
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')) || line.startsWith(QLatin1String("//")))
            return {};
        const int colon = line.indexOf(QLatin1Char(':'));
        const QString name = line.left(colon).toLower();
        const QString rest = line.mid(colon + 1);
        static const QRegularExpression filterName(QStringLiteral("^filter ?[0-9]*$"));
        if (colon >= 0 && filterName.match(name).hasMatch())
            return readFilter(wordsOf(rest));
        if (colon >= 0 && name == QLatin1String("graphiceq"))
            return readList(rest);
        if (colon >= 0 && name == QLatin1String("preamp"))
            return readPreamp(wordsOf(rest));
        if (colon >= 0 && name == QLatin1String("channel"))
            return readChannel(wordsOf(rest));
        return QStringLiteral("neither a filter nor a list nor a preamp");
    }

    QString readChannel(const QStringList &words)
    {
        m_isForAll = words == QStringList(QStringLiteral("all"));
        return m_isForAll ? QString() : QStringLiteral("one curve holds for all outputs; what is for some of them is left out");
    }

    QString readPreamp(const QStringList &words)
    {
        const std::optional<double> number = numberOf(words.first());
        const bool isPlain = words.size() == 1 || (words.size() == 2 && words.last() == QLatin1String("db"));
        if (!isPlain || !number || !isGain(*number))
            return QStringLiteral("a preamp is a number of dB");
        if (m_isForAll)
            m_text.preamp += *number;
        return {};
    }

    QString readList(const QString &text)
    {
        EqualizerText::List list;
        QStringList pairs = text.split(QLatin1Char(';'));
        if (pairs.size() > 1 && pairs.last().trimmed().isEmpty())
            pairs.removeLast();
        for (const QString &pair : qAsConst(pairs)) {
            const QStringList words = wordsOf(pair);
            const std::optional<double> frequency = numberOf(words.first());
            const std::optional<double> gain = numberOf(words.value(1));
            if (words.size() != 2 || !frequency || !gain)
                return QStringLiteral("a list has a frequency and a gain between its semicolons, not \"%1\"").arg(pair.trimmed());
            if (isAmbiguous(words.first()))
                return ambiguity(words.first());
            if (!isListed(*frequency) || !isGain(*gain))
                return QStringLiteral("no list can have %1 dB at %2 Hz").arg(words.at(1), words.first());
            list.append({*frequency, *gain});
        }
        std::stable_sort(list.begin(), list.end(), [](const Point &one, const Point &other) { return one.frequency < other.frequency; });
        const auto twice
            = std::adjacent_find(list.cbegin(), list.cend(), [](const Point &one, const Point &other) { return one.frequency == other.frequency; });
        if (twice != list.cend())
            return QStringLiteral("%1 Hz is twice in the list").arg(twice->frequency);
        if (m_isForAll)
            m_text.lists.append(list);
        return {};
    }

    QString readFilter(QStringList words)
    {
        if (words.first() == QLatin1String("off") || words == QStringList{QStringLiteral("on"), QStringLiteral("none")}) {
            ++m_text.filtersOff;
            return {};
        }
        if (words.takeFirst() != QLatin1String("on"))
            return QStringLiteral("a filter is ON or OFF");
        const QString kindWord = words.isEmpty() ? QString() : words.takeFirst();
        const KindName *const kind = kindOf(kindWord);
        if (!kind)
            return QStringLiteral("\"%1\" is no kind of filter").arg(kindWord.toUpper());
        if (kind->kind == KindName::NotDoable)
            return QStringLiteral("the unit's bands cannot do a filter of the kind %1").arg(kindWord.toUpper());
        EqualizerText::Filter filter;
        if (kind->kind != KindName::Peak)
            filter.shelf = kind->kind == KindName::LowShelf ? Shelf::Low : Shelf::High;
        QString problem = readValues(words, filter);
        if (!problem.isEmpty() || !m_isForAll)
            return problem;
        if (filter.shelf)
            m_text.notes.append({m_line, QStringLiteral("the unit has no shelf; its bands come as near as they can")});
        m_text.filters.append(filter);
        return {};
    }

    /// "fc 100 hz gain -2.5 db q 1.41", in any order.
    static QString readValues(QStringList words, EqualizerText::Filter &filter)
    {
        Values values;
        while (!words.isEmpty()) {
            const QString name = words.takeFirst();
            const bool isBandwidth = name == QLatin1String("bw");
            std::optional<double> *const value = name == QLatin1String("fc") ? &values.frequency
                : name == QLatin1String("gain")                              ? &values.gain
                : name == QLatin1String("q") || isBandwidth                  ? &values.q
                                                                             : nullptr;
            if (!value)
                return QStringLiteral("what is \"%1\"?").arg(name);
            if (*value)
                return QStringLiteral("%1 is there twice").arg(nameOf(name));
            if (isBandwidth && words.value(0) == QLatin1String("oct"))
                words.removeFirst();
            const QString word = words.isEmpty() ? QString() : words.takeFirst();
            *value = numberOf(word);
            if (!*value)
                return QStringLiteral("%1 needs a number, not \"%2\"").arg(nameOf(name), word);
            if (value == &values.frequency && words.value(0) != QLatin1String("khz") && isAmbiguous(word))
                return ambiguity(word);
            if (isBandwidth)
                *value = 1 / (2 * std::sinh(std::log(2.0) / 2 * **value));
            takeUnit(words, name, *value);
        }
        if (!values.q && filter.shelf)
            values.q = usualShelfQ;
        return take(values, filter);
    }

    struct Values
    {
        std::optional<double> frequency;
        std::optional<double> gain;
        std::optional<double> q;
    };

    static void takeUnit(QStringList &words, const QString &name, std::optional<double> &value)
    {
        constexpr double thousand = 1000;
        const QString unit = words.value(0);
        const bool isKilohertz = name == QLatin1String("fc") && unit == QLatin1String("khz");
        if (isKilohertz)
            *value *= thousand;
        if (isKilohertz || unit == QLatin1String(name == QLatin1String("fc") ? "hz" : name == QLatin1String("gain") ? "db" : "oct"))
            words.removeFirst();
    }

    static QString take(const Values &values, EqualizerText::Filter &filter)
    {
        const char *const missing = !values.frequency ? "Fc" : !values.gain ? "Gain" : !values.q ? "Q" : nullptr;
        if (missing)
            return QLatin1String(missing) + QStringLiteral(" is missing");
        filter.band = {*values.frequency, *values.q, *values.gain};
        if (!(filter.band.frequency >= lowestFrequency && 2 * filter.band.frequency < EqualizerResponse::samplingRate))
            return QStringLiteral("%1 Hz is not from 1 Hz to below 24 kHz").arg(filter.band.frequency);
        if (!isGain(filter.band.gain))
            return QStringLiteral("a gain of %1 dB is beyond 60 dB").arg(filter.band.gain);
        if (!(filter.band.q >= lowestQ && filter.band.q <= highestQ))
            return QStringLiteral("a Q of %1 is not from 0.01 to 1000").arg(filter.band.q);
        return {};
    }

    /// As the tools write it.
    static QString nameOf(const QString &word) { return word == QLatin1String("bw") ? word.toUpper() : word.at(0).toUpper() + word.mid(1); }

    EqualizerText m_text;
    int m_line = 0;
    bool m_isForAll = true;
};

EqualizerText EqualizerText::read(const QByteArray &bytes)
{
    const QTextCodec *const marked = QTextCodec::codecForUtfText(bytes, QTextCodec::codecForName("UTF-8"));
    return EqualizerTextReader().read(marked->toUnicode(bytes));
}

QString EqualizerText::written(const EqualizerResponse::Bands &bands, const QString &title)
{
    QString text = QStringLiteral("# %1\n").arg(title);
    const double highest = EqualizerResponse::highestPoint(bands).level;
    constexpr double tenth = 10;
    if (highest > 0)
        text += QStringLiteral("Preamp: %1 dB\n").arg(shortNumber(-std::ceil(highest * tenth) / tenth));
    int number = 0;
    for (const Band &band : bands) {
        text += QStringLiteral("Filter %1: ON PK Fc %2 Hz Gain %3 dB Q %4\n")
                    .arg(++number)
                    .arg(shortNumber(band.frequency), shortNumber(band.gain), shortNumber(band.q));
    }
    return text;
}

double EqualizerText::level(double frequency) const
{
    double sum = 0;
    for (const Filter &filter : filters)
        sum += filter.shelf ? EqualizerResponse::level(*filter.shelf, filter.band, frequency) : EqualizerResponse::level(filter.band, frequency);
    for (const List &list : lists)
        sum += levelOf(list, frequency);
    return sum;
}

bool EqualizerText::isEmpty() const
{
    return filters.isEmpty() && lists.isEmpty() && filtersOff == 0;
}
