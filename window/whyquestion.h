#ifndef WHYQUESTION_H
#define WHYQUESTION_H

#include "benchquery.h"

#include <QtCore/QStringList>
#include <QtCore/QTimer>
#include <QtCore/QVariantMap>

/// Why a source was as loud as it was at a moment of a log, as "explain --why" answers. The last question counts.
class WhyQuestion : public QObject
{
    Q_OBJECT
    /// {name, at, outcome, links: [{what, text, place, known}], otherwise: [{what, text}]}; empty for nothing yet
    Q_PROPERTY(QVariantMap answer READ answer NOTIFY changed)
    /// Why there is no answer; empty where there is one.
    Q_PROPERTY(QString problem READ problem NOTIFY changed)
    Q_PROPERTY(bool isAsking READ isAsking NOTIFY changed)

public:
    explicit WhyQuestion(QObject *parent = nullptr);

    QVariantMap answer() const { return m_answer; }
    QString problem() const { return m_problem; }
    bool isAsking() const { return m_query.isOpen(); }

    /// Asks when the pointer has stood still for a while. @param time s from the log's first line
    void ask(const QString &log, const QString &source, double time);
    /// There is nothing to be asked. @param problem why
    void clear(const QString &problem = {});

Q_SIGNALS:
    void changed();

private:
    void start();
    void take(int status, const QByteArray &output, const QString &said);

    BenchQuery m_query;
    QTimer m_delay;
    QStringList m_arguments; // of the question that waits
    QVariantMap m_answer;
    QString m_problem;
};

#endif
