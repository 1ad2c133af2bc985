#ifndef OPERATIONTEST_H
#define OPERATIONTEST_H

#include <facadetest.h>
#include <texts.h>

#include <QtCore/QMetaType>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <functional>

/**
 * Tests that are tables: a row says what is wrong with the platform, what the client does, and what must come of it.
 *
 *     void MicrophoneTest::startMicGainCalibration_data()
 *     {
 *         addColumns();
 *         addRow("the platform refuses",
 *                {refused("Volume.startMicGainCalibration", 7)}, // given
 *                [](audio::AudioControl &control) { return control.startMicGainCalibration(); }, // when
 *                7, // the result
 *                fresh("Volume", {"Volume.startMicGainCalibration() -> 7"_s}), // what reached the platform, in order
 *                {info("startMicGainCalibration")}); // what was logged, in order
 *     }
 *
 *     void MicrophoneTest::startMicGainCalibration()
 *     {
 *         checkRow();
 *     }
 *
 * Calls and log lines are compared whole: one too many fails as one too few does.
 */
class OperationTest : public FacadeTest
{
    Q_OBJECT

public:
    using Given = std::function<void(OperationTest &)>;
    using Act = std::function<QVariant(audio::AudioControl &)>;

protected:
    // What is wrong with the platform
    /// Every call of an operation fails.
    static Given refused(const char *operation, int code);
    /// Every call of an operation writes its outputs and fails all the same.
    static Given refusedAfterWriting(const char *operation, int code);
    /// Only the n-th call of an operation fails, counted from 1.
    static Given refusedOnce(const char *operation, int code, int n);
    /// The platform makes no more objects of a kind.
    static Given noneMade(const char *kind);
    /// The facade was built on a platform that made no objects: its long-lived Volume and App are null.
    static Given startedWithoutObjects();

    // What is expected
    /// A line of success or information.
    static QString info(const QString &text);
    static QString info(const char *text) { return info(QString::fromLatin1(text)); }
    /// An error line.
    static QString error(const QString &text);
    static QString error(const char *text) { return error(QString::fromLatin1(text)); }
    /// A debug trace from a function.
    static QString trace(const char *signature, const char *text);
    /// The two traces that an operation by tag begins with: the tag with its track, the Qt-side name with the platform's.
    static QStringList translation(const char *signature, int tag, const char *track, const char *qtName, const char *name, const char *role);
    /// Calls between the making and the destroying of one object.
    static QStringList fresh(const char *kind, const QStringList &calls);
    static QString created(const char *kind);
    static QString notCreated(const char *kind);
    static QString destroyed(const char *kind);

    static void addColumns();
    static void
    addRow(const char *name, const QVector<Given> &given, const Act &act, const QVariant &result, const QStringList &calls, const QStringList &lines);
    void checkRow();
};

Q_DECLARE_METATYPE(OperationTest::Act)
Q_DECLARE_METATYPE(OperationTest::Given)

#endif
