#ifndef CARSNAPSHOT_H
#define CARSNAPSHOT_H

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QVariantMap>

#include <ctime>
#include <sys/types.h>

class ScenarioEngine;
struct TimelineEvent;

namespace simulator
{
struct JournalEntry;
}

/**
 * What the car is like at this moment, in sections for the rooms of the window; docs/window.md lists them.
 *
 * Reading changes nothing: no log line, no platform call, no access to the flash beyond looking whether the settings file is another one.
 */
class CarSnapshot
{
public:
    explicit CarSnapshot(ScenarioEngine &scripts);

    /// The sections that are other ones than those given last.
    QVariantMap changedSections(qint64 now);

    /// What only its cause tells: a save, a fade.
    void follow(const TimelineEvent &event);
    void follow(const simulator::JournalEntry &entry);

private:
    QVariantMap drive() const;
    QVariantMap car() const;
    QVariantMap tone() const;
    QVariantMap focus() const;
    QVariantMap platform() const;
    QVariantMap settings() const;
    static QVariantMap microphone();
    void lookAtFile(const TimelineEvent &event);

    struct Count
    {
        int calls = 0;
        int refused = 0;
    };

    ScenarioEngine &m_scripts;
    QVariantMap m_given;
    QHash<QString, Count> m_counts; // by operation
    int m_fade = 0;
    int m_balance = 0;

    // Of the settings file
    ino_t m_inode = 0;
    timespec m_modified = {};
    int m_writes = 0;
    qint64 m_lastWrite = -1;
    QString m_lastCause;
};

#endif
