#ifndef HELPTOPICS_H
#define HELPTOPICS_H

#include <QtCore/QString>
#include <QtCore/QStringList>

/// Things other than commands that "help" tells about: "qzaudio-bench help NAME". A command brings them (Command::helpTopics()).
class HelpTopics
{
public:
    virtual ~HelpTopics() = default;

    /// All of them, for the completion and for the advice on a mistyped one. A command of the same name comes first.
    virtual QStringList names() const = 0;
    /// What there is to tell about one of the names, written like Command::details().
    virtual QString text(const QString &name) const = 0;

protected:
    HelpTopics() = default;
    Q_DISABLE_COPY(HelpTopics)
};

#endif
