#ifndef PLATFORMARGUMENTS_H
#define PLATFORMARGUMENTS_H

#include "scriptcall.h"

#include <QtCore/QSet>
#include <QtCore/QString>

/**
 * Checks the arguments of a call that asks the simulated platform.
 *
 * A track, source, channel, input or band that the platform does not have throws a RangeError which names the nearest: a mistyped name would
 * read as silent for ever. The first argument that does not fit ends it, as in ScriptArguments.
 */
class PlatformArguments
{
public:
    /// @param known names of sources in use, besides those of the library
    PlatformArguments(const QObject *asked, const QSet<QString> &known);

    /// The platform must not be asked then.
    bool failed() const { return m_unknown || m_arguments.failed(); }

    /// What the argument has to be is told by its name: "track", "source" (or empty, for none), "channel" (one output channel bit), "input" or
    /// "band". Others are left to the operation.
    void check(const ScriptArgument &argument);

private:
    Q_DISABLE_COPY(PlatformArguments)

    template<typename Value>
    Value read(const ScriptArgument &argument)
    {
        Value value = {};
        if (!m_arguments.failed())
            m_arguments.read(argument, value);
        return value;
    }
    void checkTrack(const ScriptArgument &argument);
    void checkSource(const ScriptArgument &argument);
    void checkChannel(const ScriptArgument &argument);
    void checkInput(const ScriptArgument &argument);
    void checkBand(const ScriptArgument &argument);
    void refuse(const QString &message);

    const QObject *const m_callee;
    const QSet<QString> &m_namesInUse;
    ScriptArguments m_arguments;
    bool m_unknown = false;
};

#endif
