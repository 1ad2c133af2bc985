#ifndef FAULTEXPECTATION_H
#define FAULTEXPECTATION_H

#include "faultrules.h"
#include "platformrun.h"
#include "walkedfault.h"

#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtCore/QStringList>
#include <QtCore/QVector>

/// What a run has to be with a fault: the run without it, changed as the rules say.
class FaultExpectation
{
public:
    /// @param operation "setStreamVolume"
    FaultExpectation(const QString &operation, const PlatformRun &smooth, const WalkedFault &fault);

    const PlatformRun &run() const { return m_expected; }
    /// Whether the same call afterwards has to work like a first one instead of a second one.
    bool keepsState() const { return m_keepsState; }
    /// What the rules do not say, or say of lines that there are not.
    const QStringList &gaps() const { return m_gaps; }

private:
    enum class Answer { Refusal, NoObject };

    void refuse(int index, int n);
    void withhold(int index);
    void changeLog(int index, const QString &step, const QString &call, int code);
    void changeLine(const faultrules::LogChange &change, int index, int code);
    bool changeFound(const faultrules::LogChange &change, int index, int code);
    void dropCalls(int index, const QString &step, const QString &call);
    void changeResult(int index, const QString &step, Answer answer, int code);
    void changeState(int index, const QString &step);
    void setOutputs(bool areWritten, const QVariant &code);
    void collectLines();

    QString stepOf(int index) const;
    int firstCallOn(int index) const;
    int segmentEnd(int index) const;
    bool isKept(int index) const;
    bool isInSegment(int index, const char *call) const;
    QString text(const char *form, int index, int code, const QString &captured = QString()) const;

    const QString m_operation;
    const PlatformRun &m_smooth;
    const WalkedFault m_fault;

    PlatformRun m_expected;
    QSet<QString> m_neverDestroyed; ///< "Volume#1"
    QSet<QString> m_missing; ///< kept objects that there are not, "Volume#1"
    QSet<int> m_gone; ///< entries that are not made
    QVector<QStringList> m_lines; ///< what has become of each line; the last one for what comes behind all
    QVector<QStringList> m_inserted; ///< before each line
    QSet<int> m_changedLines;
    int m_lastChanged = -1;
    int m_combined = 0; ///< codes of the calls that share one line
    int m_combinedAt = -1;
    bool m_resultIsDecided = false;
    bool m_keepsState = false;
    QStringList m_gaps;
};

#endif
