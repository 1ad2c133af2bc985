#include "finding.h"

#include <algorithm>
#include <iterator>

namespace
{

constexpr Finding::Grade grades[] = {Finding::Grade::Good, Finding::Grade::Note, Finding::Grade::Wrong};

template<typename Condition>
const AreaRow &rowWhere(Condition condition)
{
    return *std::find_if(std::cbegin(areas), std::cend(areas), condition);
}

} // namespace

QLatin1String nameOf(Finding::Area area)
{
    return QLatin1String(rowWhere([area](const AreaRow &row) { return row.area == area; }).name);
}

QLatin1String nameOf(Finding::Grade grade)
{
    switch (grade) {
    case Finding::Grade::Good:
        return QLatin1String("good");
    case Finding::Grade::Note:
        return QLatin1String("note");
    case Finding::Grade::Wrong:
        break;
    }
    return QLatin1String("wrong");
}

QJsonObject toJson(const Finding &finding)
{
    return {{QStringLiteral("area"), nameOf(finding.area)},
            {QStringLiteral("grade"), nameOf(finding.grade)},
            {QStringLiteral("subject"), finding.subject},
            {QStringLiteral("text"), finding.text},
            {QStringLiteral("facts"), finding.facts}};
}

Finding findingOf(const QJsonObject &object)
{
    const QString area = object.value(QLatin1String("area")).toString();
    const QString grade = object.value(QLatin1String("grade")).toString();
    return {rowWhere([&area](const AreaRow &row) { return area == QLatin1String(row.name); }).area,
            *std::find_if(std::cbegin(grades), std::cend(grades), [&grade](Finding::Grade each) { return grade == nameOf(each); }),
            object.value(QLatin1String("subject")).toString(),
            object.value(QLatin1String("text")).toString(),
            object.value(QLatin1String("facts")).toObject()};
}

int exitStatusOf(const Findings &findings)
{
    for (const AreaRow &row : areas) {
        const bool isWrong = std::any_of(
            findings.cbegin(), findings.cend(), [&row](const Finding &finding) { return finding.area == row.area && finding.grade == Finding::Grade::Wrong; });
        if (isWrong)
            return row.exitStatus;
    }
    return 0;
}
