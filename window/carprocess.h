#ifndef CARPROCESS_H
#define CARPROCESS_H

#include "boundprocess.h"

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtCore/QTimer>
#include <QtCore/QVariantMap>
#include <QtCore/QVector>

/**
 * The process that a car lives in, and the messages to and from it (see messages.h).
 *
 * Each replay needs a new one: a library that has been used once remembers that until its process ends.
 */
class CarProcess : public QObject
{
    Q_OBJECT

public:
    struct Files
    {
        QString flash; ///< folder; what is in it is removed before a car starts
        QString log;
        QString sound;
    };

    explicit CarProcess(const Files &used, QObject *parent = nullptr);
    ~CarProcess() override;

    /// Ends the car that there is, and starts another one as soon as that is gone. @param isMeasured whether its scripts measure sound
    void startAnew(bool isMeasured);
    /// To the car that was started last; kept until it runs.
    void send(const QVariantMap &message);

Q_SIGNALS:
    /// By the car that was started last.
    void told(const QVariantMap &message);
    /// The car ended, or could not be started, though nobody wanted it to.
    void lost(const QString &why);

private:
    Q_DISABLE_COPY(CarProcess)

    void start();
    void end();
    void readMessages();
    bool readMessage();
    void finished();

    const Files m_files;
    QPointer<BoundProcess> m_process;
    QVector<QVariantMap> m_waiting; // messages to a car that does not run yet
    QTimer m_nextRead; // of what the car told already
    bool m_isMeasured = false;
    bool m_isWanted = false; // a car is to be started when the last one is gone
};

#endif
