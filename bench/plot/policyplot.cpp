#include "policyplot.h"

#include "explain/policyrules.h"

#include "policynames.h"

#include <QtCore/QLatin1String>

namespace
{

QString numbered(const policynames::Number &number)
{
    return QStringLiteral("%1 %2").arg(number.number).arg(QLatin1String(number.name));
}

QString sourceOf(const policynames::Number &channel)
{
    const QString source = PolicyRules::sourceOfChannel(channel.number);
    return source == QLatin1String("S+none") ? QStringLiteral("no source") : source;
}

} // namespace

Figure PolicyPlot::draw()
{
    Figure::Column statuses{QStringLiteral("statuses"), {}, {}};
    Figure::Column types{QStringLiteral("volume types"), {}, {}};
    Figure::Column channels{QStringLiteral("channels"), {}, {}};
    for (const policynames::Number &status : policynames::statuses) {
        const QString source = PolicyRules::sourceOfStatus(status.number);
        statuses.nodes.append({numbered(status), source.isEmpty() ? QStringLiteral("source of the channel") : source});
        statuses.edges.append({status.number, PolicyRules::typeOfStatus(status.number)});
    }
    for (const policynames::Number &type : policynames::volumeTypes)
        types.nodes.append({QStringLiteral("%1 %2").arg(type.number).arg(QLatin1String(type.meaning)), {}});
    for (const policynames::Number &channel : policynames::channels) {
        channels.nodes.append({numbered(channel), sourceOf(channel)});
        types.edges.append({PolicyRules::typeOfChannel(channel.number), channel.number});
    }
    Figure figure{QStringLiteral("Which stored volume a status applies, and which one a channel has")};
    figure.panels = {Figure::Graph{{statuses, types, channels}}};
    figure.remarks.append(QStringLiteral(
        "A status applies its volume to its own source, or to that of the channel; a channel plays its source on the main track. The volume of a HiCar "
        "call is that of no status and of no channel: in channel 18 the volume keys work on it."));
    return figure;
}
