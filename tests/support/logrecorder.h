#ifndef LOGRECORDER_H
#define LOGRECORDER_H

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

/**
 * Records every line that goes to Qt's message handler while it lives, instead of printing it.
 *
 * One at a time. Lines of the simulated platform's own categories are left out.
 */
class LogRecorder
{
public:
    struct Line
    {
        QtMsgType level;
        QByteArray file;
        int number;
        QByteArray signature;
        QString text;
    };

    LogRecorder();
    ~LogRecorder();

    /// The lines of category "default" since the last call of take(), in order.
    QList<Line> take();
    /// Their texts only. In traces the thread's number reads "THREAD", and source lines read "LINE" in both forms.
    QStringList takeTexts();
    /// takeTexts() without the traces: what the facade says.
    QStringList takeFacadeTexts();

private:
    Q_DISABLE_COPY(LogRecorder)
};

#endif
