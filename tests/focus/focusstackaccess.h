#ifndef FOCUSSTACKACCESS_H
#define FOCUSSTACKACCESS_H

#include <memberaccess.h>
#include <qzaudio/audiofocuscontrol.h>

#include <QtCore/QStringList>

namespace
{

OPEN_MEMBER(AudioFocusControl, focusStack, QStack<FocusRequester>)

} // namespace

/// The operations never bring a corrupt entry into the stack, and one client twice only where it asks again from within a change that it
/// causes; what they do with other such stacks can only be tested from here.
inline QStack<FocusRequester> &focusStackOf(AudioFocusControl &control)
{
    return control.*memberOf(focusStack_Member());
}

/// The stack from bottom to top, each entry as "ID STREAM HINT LOSS".
inline QStringList stackTexts(AudioFocusControl &control)
{
    QStringList texts;
    for (const FocusRequester &entry : qAsConst(focusStackOf(control)))
        texts.append(QStringLiteral("%1 %2 %3 %4").arg(entry.clientId).arg(entry.streamType).arg(entry.durationHint).arg(entry.focusLossReceived));
    return texts;
}

#endif
