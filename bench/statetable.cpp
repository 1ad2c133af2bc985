#include "statetable.h"

#include "console.h"

#include "platform.h"

#include <algorithm>

namespace
{

constexpr int margin = 2;

QString valueText(const QVariant &value)
{
    if (value.type() == QVariant::List) {
        QStringList texts;
        const QVariantList list = value.toList();
        for (const QVariant &element : list)
            texts.append(valueText(element));
        return texts.join(QLatin1Char(' '));
    }
    if (value.type() == QVariant::Map) {
        QStringList texts;
        const QVariantMap map = value.toMap();
        for (auto field = map.cbegin(); field != map.cend(); ++field)
            texts.append(field.key() + QLatin1Char(' ') + valueText(field.value()));
        return texts.join(QLatin1String(", "));
    }
    if (value.userType() == QMetaType::Float || value.userType() == QMetaType::Double) {
        constexpr int digits = 6;
        return QString::number(value.toDouble(), 'g', digits);
    }
    return value.toString();
}

} // namespace

QString StateTable::toText()
{
    const auto items = simulator::Platform::instance()->chip()->stateTable();
    int groupWidth = 0;
    int nameWidth = 0;
    for (const simulator::StateItem &item : items) {
        groupWidth = std::max(groupWidth, item.group.size());
        nameWidth = std::max(nameWidth, item.name.size());
    }
    const int valueColumn = margin + groupWidth + margin + nameWidth + margin;

    QString text = Console::styled(Console::Style::Heading, QStringLiteral("The platform's state")) + QLatin1Char('\n');
    QString group;
    for (const simulator::StateItem &item : items) {
        // A group's name stands beside its first item only.
        const QString shownGroup = item.group == group ? QString() : item.group;
        group = item.group;
        text += QString(margin, QLatin1Char(' ')) + shownGroup.leftJustified(groupWidth + margin) + item.name.leftJustified(nameWidth + margin)
            + Console::wrapped(valueText(item.value), valueColumn, valueColumn).mid(valueColumn) + QLatin1Char('\n');
    }
    return text;
}
