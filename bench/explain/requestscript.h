#ifndef REQUESTSCRIPT_H
#define REQUESTSCRIPT_H

#include "loggedrequest.h"

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QStringList>

/**
 * The statements of a scenario that make a logged request once more.
 *
 * Some are told by what they changed, so requests are to be given in their order, each one once.
 */
class RequestScript
{
public:
    struct Statements
    {
        QStringList lines; ///< without indentation; empty where there is nothing to call
        QString remark; ///< what of it the log does not say; empty where it says all
    };

    /// What stands in a statement for the count of a timed mute, which only the end of the mute tells.
    static QString muteCount() { return QStringLiteral("COUNT"); }

    /// Of anything but the manager's start and its timers.
    Statements of(const LoggedRequest &request);
    /// What the request, of any kind, has changed: to be told behind of().
    void learn(const LoggedRequest &request);

    /// A text as it stands in a script, also in a comment, whatever characters it has.
    static QString harmless(const QString &text);

private:
    Statements stepStatements(const LoggedRequest &request);
    Statements oneStepStatements(const LoggedRequest &request);
    bool isStepUp(const QString &name, int step) const;
    void learnStep(const QString &source, int step);
    void learnRange(int step, int value, QStringList &lines);

    QHash<QString, int> m_sentSteps; // all at once, by the platform's name of the source
    QHash<QString, int> m_changedSteps; // one by one, by the facade's name
    int m_range = 100; // the facade's own
    bool m_isMuted = false;
};

#endif
