#ifndef EQUALIZEROPERATIONS_H
#define EQUALIZEROPERATIONS_H

#include "operationtest.h"

/// Gain lists handed to the facade; a list of a wrong length or with a wrong gain is the row's business.

inline OperationTest::Act applyGains(const QList<float> &gains)
{
    return [gains](audio::AudioControl &control) {
        control.setEqGain(gains);
        return QVariant();
    };
}

inline OperationTest::Act applyTenGains(const QList<int> &gains)
{
    return [gains](audio::AudioControl &control) {
        control.setEqGain10(gains);
        return QVariant();
    };
}

inline OperationTest::Act applyValues(const QList<int> &gains)
{
    return [gains](audio::AudioControl &control) {
        control.setEqValue(gains);
        return QVariant();
    };
}

#endif
