#include "platformarguments.h"

#include "nearestname.h"
#include "policynames.h"

#include "tracks.h"

#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace
{

constexpr int bandCount = 20; // of the extended record
constexpr int longestText = 60; // of a foreign name in a message

QString quoted(const QString &name)
{
    return QLatin1Char('"') + (name.size() > longestText ? name.left(longestText) + QChar(0x2026) : name) + QLatin1Char('"');
}

QString nearestText(const QString &name, const QStringList &known)
{
    const QString nearest = nearestName(name, known);
    return nearest.isEmpty() ? QString() : QLatin1String("; the nearest is ") + quoted(nearest);
}

/// @param known ascending
QString nearestText(qint64 number, const QVector<qint64> &known)
{
    const auto isNearer = [number](qint64 a, qint64 b) { return std::llabs(a - number) < std::llabs(b - number); };
    QStringList names;
    for (const qint64 one : known)
        names.append(QString::number(one));
    return QStringLiteral("; the nearest of %1 is %2").arg(names.join(QLatin1String(", "))).arg(*std::min_element(known.cbegin(), known.cend(), isNearer));
}

QStringList tracks()
{
    QStringList names;
    for (const char *const track : simulator::trackNames)
        names.append(QLatin1String(track));
    return names;
}

QStringList sources(const QSet<QString> &others)
{
    QStringList names;
    for (const policynames::Source &source : policynames::sources) {
        const QLatin1String name(source.name);
        // AirPlay's stands there as applications write it, too; on the platform that is no source.
        if (!name.startsWith(QLatin1String("s+")))
            names.append(name);
    }
    QStringList further = others.values();
    further.sort(); // so that of two equally near ones it is always the same
    return names + further;
}

QVector<qint64> channels()
{
    QVector<qint64> bits;
    for (const simulator::OutputChannel &channel : simulator::outputChannels)
        bits.append(channel.bit);
    return bits;
}

} // namespace

PlatformArguments::PlatformArguments(const QObject *asked, const QSet<QString> &known)
    : m_callee(asked)
    , m_namesInUse(known)
    , m_arguments(asked)
{
}

void PlatformArguments::refuse(const QString &message)
{
    m_unknown = true;
    throwScriptError(m_callee, QJSValue::RangeError, message);
}

void PlatformArguments::check(const ScriptArgument &argument)
{
    struct Check
    {
        const char *name;
        void (PlatformArguments::*check)(const ScriptArgument &);
    };
    static constexpr Check checks[] = {
        {"track", &PlatformArguments::checkTrack},
        {"source", &PlatformArguments::checkSource},
        {"channel", &PlatformArguments::checkChannel},
        {"input", &PlatformArguments::checkInput},
        {"band", &PlatformArguments::checkBand},
    };
    const auto *const found
        = std::find_if(std::cbegin(checks), std::cend(checks), [&argument](const Check &candidate) { return qstrcmp(candidate.name, argument.name) == 0; });
    if (found != std::cend(checks) && !failed())
        (this->*found->check)(argument);
}

void PlatformArguments::checkTrack(const ScriptArgument &argument)
{
    const auto name = read<QString>(argument);
    if (failed() || simulator::isTrack(name))
        return;
    const QString nearest = nearestText(name, tracks());
    refuse(QStringLiteral("there is no track %1").arg(quoted(name))
           + (nearest.isEmpty() ? QLatin1String("; tracks are ") + tracks().join(QLatin1String(", ")) : nearest));
}

void PlatformArguments::checkSource(const ScriptArgument &argument)
{
    const auto name = read<QString>(argument);
    if (failed() || name.isEmpty())
        return;
    const QStringList known = sources(m_namesInUse);
    if (!known.contains(name))
        refuse(QStringLiteral("there is no source %1").arg(quoted(name)) + nearestText(name, known));
}

void PlatformArguments::checkChannel(const ScriptArgument &argument)
{
    const auto bit = read<quint32>(argument);
    if (!failed() && !channels().contains(bit))
        refuse(QStringLiteral("there is no channel %1").arg(bit) + nearestText(bit, channels()));
}

void PlatformArguments::checkInput(const ScriptArgument &argument)
{
    const QVector<qint64> inputs = {1, 2}; // the auxiliary one, I2S
    const auto input = read<int>(argument);
    if (!failed() && !inputs.contains(input))
        refuse(QStringLiteral("there is no input %1").arg(input) + nearestText(input, inputs));
}

void PlatformArguments::checkBand(const ScriptArgument &argument)
{
    const auto band = read<int>(argument);
    if (!failed() && (band < 0 || band >= bandCount))
        refuse(QStringLiteral("there is no band %1; bands are 0 to %2").arg(band).arg(bandCount - 1));
}
