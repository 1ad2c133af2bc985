#include "policytext.h"

#include "policynames.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace
{

template<std::size_t count>
const policynames::Number *find(const policynames::Number (&numbers)[count], int number)
{
    return number >= 0 && static_cast<std::size_t>(number) < count ? &numbers[number] : nullptr;
}

template<std::size_t count>
QString nameOf(const policynames::Number (&numbers)[count], int number)
{
    const policynames::Number *const found = find(numbers, number);
    return found == nullptr ? QString::number(number) : QString::fromLatin1(found->name);
}

template<std::size_t count>
QString meaningOf(const policynames::Number (&numbers)[count], int number)
{
    const policynames::Number *const found = find(numbers, number);
    return found == nullptr ? QString() : QString::fromLatin1(found->meaning);
}

} // namespace

QString statusText(int status)
{
    return nameOf(policynames::statuses, status);
}

QString statusMeaning(int status)
{
    return meaningOf(policynames::statuses, status);
}

QString channelText(int channel)
{
    return nameOf(policynames::channels, channel);
}

QString channelMeaning(int channel)
{
    return meaningOf(policynames::channels, channel);
}

QString volumeTypeText(int type)
{
    return nameOf(policynames::volumeTypes, type);
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
