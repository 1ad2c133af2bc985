#ifndef BENCHQUERY_H
#define BENCHQUERY_H

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

class QProcess;

/**
 * What qzaudio-bench answers, in a process of its own that nobody waits for.
 *
 * The last question counts: one that is open still when another is asked has no answer.
 */
class BenchQuery : public QObject
{
    Q_OBJECT

public:
    explicit BenchQuery(QObject *parent = nullptr);
    ~BenchQuery() override;

    void ask(const QStringList &arguments);
    /// Nobody wants to know any more.
    void cancel();
    bool isOpen() const { return m_process != nullptr; }

Q_SIGNALS:
    /// @param status one of ExitStatus @param said what is the matter, for people; empty for nothing
    void answered(int status, const QByteArray &output, const QString &said);

private:
    Q_DISABLE_COPY(BenchQuery)

    void take();
    void fail();

    QProcess *m_process = nullptr;
};

#endif
