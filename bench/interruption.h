#ifndef INTERRUPTION_H
#define INTERRUPTION_H

#include <QtCore/QObject>

/**
 * Ctrl+C and requests to stop, as a Qt signal instead of the end of the process. One at a time; programs that are started do not
 * inherit it.
 */
class Interruption : public QObject
{
    Q_OBJECT

public:
    explicit Interruption(QObject *parent = nullptr);
    ~Interruption() override;

    /// The signal that came, 0 for none.
    static int received();

Q_SIGNALS:
    void interrupted();

private:
    Q_DISABLE_COPY(Interruption)
};

#endif
