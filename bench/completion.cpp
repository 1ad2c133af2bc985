#include "completion.h"

#include <algorithm>
#include <optional>

namespace
{

/// What the words of a command mean that stand before the one to be completed.
struct Before
{
    QStringList arguments;
    std::optional<Command::Option> unfinished; ///< the next word is its value
    bool takesOptions = true; ///< no "--" yet
};

std::optional<Command::Option> optionOf(const QVector<Command::Option> &options, const QString &word)
{
    const QString name = word.section(QLatin1Char('='), 0, 0);
    const auto isIt = [&name](const Command::Option &option) {
        return name == QLatin1String("--") + option.name || (!option.letter.isNull() && name == QLatin1Char('-') + QString(option.letter));
    };
    const auto found = std::find_if(options.cbegin(), options.cend(), isIt);
    return found == options.cend() ? std::nullopt : std::make_optional(*found);
}

Before read(const QStringList &words, const QVector<Command::Option> &options)
{
    Before before;
    for (const QString &word : words) {
        if (before.unfinished) {
            before.unfinished.reset();
        } else if (before.takesOptions && word == QLatin1String("--")) {
            before.takesOptions = false;
        } else if (before.takesOptions && word.size() > 1 && word.startsWith(QLatin1Char('-'))) {
            const auto option = optionOf(options, word);
            if (option && !option->value.isEmpty() && !word.contains(QLatin1Char('=')))
                before.unfinished = option;
        } else {
            before.arguments.append(word);
        }
    }
    return before;
}

Command::Completions valuesOf(const Command::Option &option)
{
    const bool isPath = option.value == QLatin1String("FILE") || option.value == QLatin1String("DIR");
    return {option.values, isPath ? option.value : QString()};
}

QStringList switches(const QVector<Command::Option> &options)
{
    QStringList names;
    for (const Command::Option &option : options) {
        if (!option.help.isEmpty())
            names.append(QLatin1String("--") + option.name);
    }
    names.append(QStringLiteral("--help"));
    return names;
}

Command::Completions beginningWith(const QString &begin, Command::Completions completions)
{
    QStringList &words = completions.words;
    // Members, "AudioPolicy.setVolume", only behind what they are members of: hundreds of words help nobody.
    const QStringList all = words;
    const auto isOther = [&begin, &all](const QString &word) {
        const int dot = word.indexOf(QLatin1Char('.'));
        return !word.startsWith(begin) || (dot >= begin.size() && all.contains(word.left(dot)));
    };
    words.erase(std::remove_if(words.begin(), words.end(), isOther), words.end());
    return completions;
}

} // namespace

Command::Completions Completion::of(const QStringList &words, const CommandList &commands)
{
    const QString last = words.isEmpty() ? QString() : words.last();
    if (words.size() <= 1)
        return beginningWith(
            last, {last.startsWith(QLatin1Char('-')) ? QStringList{QStringLiteral("--help"), QStringLiteral("--version")} : commandNames(commands), {}});
    const Command *const command = findCommand(commands, words.first());
    if (!command)
        return {};

    const QVector<Command::Option> options = command->options();
    const Before before = read(words.mid(1, words.size() - 2), options);
    if (before.unfinished)
        return beginningWith(last, valuesOf(*before.unfinished));
    if (!before.takesOptions || !last.startsWith(QLatin1Char('-')))
        return beginningWith(last, command->completions(before.arguments));
    if (!last.contains(QLatin1Char('=')))
        return beginningWith(last, {switches(options), {}});
    const auto option = optionOf(options, last);
    return option ? beginningWith(last.section(QLatin1Char('='), 1), valuesOf(*option)) : Command::Completions{};
}
