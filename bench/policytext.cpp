#include "policytext.h"

#include "policynames.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace
{

/// Null for a number that the policy does not have.
const policynames::Number *find(int status)
{
    return status >= 0 && static_cast<std::size_t>(status) < std::size(policynames::statuses) ? &policynames::statuses[status] : nullptr;
}

} // namespace

QString statusText(int status)
{
    const policynames::Number *const found = find(status);
    return found ? QString::fromLatin1(found->name) : QString::number(status);
}

QString statusMeaning(int status)
{
    const policynames::Number *const found = find(status);
    return found ? QString::fromLatin1(found->meaning) : QString();
}

QString sourceText(const QString &source)
{
    // The ending is that of applications' names.
    const QString ending = QStringLiteral("_APP");
    const QString name = source.endsWith(ending) ? source.chopped(ending.size()) : source;
    const auto *const found = std::find_if(std::begin(policynames::sources), std::end(policynames::sources), [&name](const policynames::Source &candidate) {
        return name == QLatin1String(candidate.name);
    });
    return found == std::end(policynames::sources) ? source : QString::fromLatin1(found->meaning);
}
