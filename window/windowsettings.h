#ifndef WINDOWSETTINGS_H
#define WINDOWSETTINGS_H

#include <QtCore/QObject>
#include <QtCore/QSettings>
#include <QtCore/QString>

/// What the window remembers of its user, in the user's configuration. Nothing of the car is in it.
class WindowSettings : public QObject
{
    Q_OBJECT
    /// "dark" or "light"; empty as long as nobody chose, then the window looks as the desktop does.
    Q_PROPERTY(QString look READ look WRITE setLook NOTIFY lookChanged)

public:
    explicit WindowSettings(QObject *parent = nullptr);
    /// Kept in @p file.
    explicit WindowSettings(const QString &file, QObject *parent = nullptr);

    QString look() const;
    /// Anything else than the two looks counts as none.
    void setLook(const QString &look);

Q_SIGNALS:
    void lookChanged();

private:
    QSettings m_settings;
};

#endif
