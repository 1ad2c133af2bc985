#ifndef SETTINGSWATCHER_H
#define SETTINGSWATCHER_H

#include "settingsreader.h"

#include <QtCore/QByteArray>
#include <QtCore/QMap>
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
    /// A key has another value; the former one is invalid where it was not in the file. A key that the library does not know and that is
    /// gone has neither a meaning nor a value.
    void changed(const SettingsReader::Setting &setting, const QVariant &before);
    /// At one look so many keys had changed that these many were not told.
    void leftOut(int changes);
    /// The file is there, but cannot be read; told once for each version of it. What held before is compared with the next one.
    void unreadable(const QString &problem);

private:
    Q_DISABLE_COPY(SettingsWatcher)

    void look();

    SettingsReader m_reader;
    QMap<QString, SettingsReader::Setting> m_settings; // of the last version that could be read
    QByteArray m_stamp;
    QTimer m_timer;
};

#endif
