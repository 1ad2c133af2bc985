#pragma once

#include <qzaudio/audiofocuscontrol.h>

#include <QtCore/QStringList>

/*
 * A way to the stack inside AudioFocusControl. Its operations never bring one client twice into the stack, and never a corrupt
 * entry; what they do with such stacks can only be tested from here.
 */

QStack<FocusRequester> &focusStackOf(AudioFocusControl &control);

template<QStack<FocusRequester> AudioFocusControl::*member>
struct FocusStackAccess
{
    // An explicit instantiation may name private members, and a friend defined in it can be called from anywhere.
    friend QStack<FocusRequester> &focusStackOf(AudioFocusControl &control) { return control.*member; }
};

/// The stack from bottom to top, each entry as "ID STREAM HINT LOSS".
inline QStringList stackTexts(AudioFocusControl &control)
{
    QStringList texts;
    for (const FocusRequester &entry : qAsConst(focusStackOf(control)))
        texts.append(QStringLiteral("%1 %2 %3 %4").arg(entry.clientId).arg(entry.streamType).arg(entry.durationHint).arg(entry.focusLossReceived));
    return texts;
}
