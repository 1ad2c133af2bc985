#ifndef FOCUSWALK_H
#define FOCUSWALK_H

#include "focusworld.h"

#include <QtCore/QSet>
#include <QtCore/QVector>

/// A call on one of the three classes of audio focus.
struct FocusOperation
{
    FocusLevel level;
    QString name;
    QString arguments;
    QString caller; ///< whose dispatcher or listener the call hands over; empty for none
    std::function<QVariant(FocusWorld &)> call;

    QString className() const;
    /// "AudioManager.requestAudioFocus(navi, 3)"
    QString text() const;
};

/// All public operations, which the headers tell.
QVector<FocusOperation> focusOperations();

struct FocusWalk
{
    QStringList failures;
    int existing = 0; ///< cases, as the runs without a fault tell
    int cases = 0;
};

/// Through all stacks, and everybody who is told, missing or calling back.
FocusWalk walkFocus(const FocusOperation &operation);

/// Whether a null listener, which has no place in a list, stops the process. True where it does.
bool nullListenerStops(const std::function<void(AudioManager &)> &call);

#endif
