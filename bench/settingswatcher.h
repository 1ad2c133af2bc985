#ifndef SETTINGSWATCHER_H
#define SETTINGSWATCHER_H

#include "settingsreader.h"

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QTimer>

/**
 * Follows the changes of a settings file.
 *
 * It looks four times a second, so that it also sees a file, or its folder, come into being, and a file put in another's place.
 * Changes closer together than that show as one.
 */
class SettingsWatcher : public QObject
{
    Q_OBJECT

public:
    explicit SettingsWatcher(const QString &file, QObject *parent = nullptr);

    void start();

Q_SIGNALS:
    /// A key has another value; an invalid one where it is not in the file.
    void changed(const QString &key, const QVariant &before, const QVariant &now);

private:
    Q_DISABLE_COPY(SettingsWatcher)

    void look();

    SettingsReader reader;
    QByteArray stamp;
    QTimer timer;
};

#endif
