#ifndef FINDING_H
#define FINDING_H

#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QVector>

/// What one look at the unit gave.
struct Finding
{
    enum class Area { Library, Platform, Records, Flash, Settings, Bus, Log };
    enum class Grade {
        Good,
        Note, ///< works, and is worth knowing
        Wrong, ///< something of the library will not work, or not last
    };

    Area area;
    Grade grade;
    QString subject; ///< one word, which stays the same in later versions: "writable"
    QString text; ///< for people: a sentence, without a full stop
    QJsonObject facts; ///< for programs: the same in figures and names
};

using Findings = QVector<Finding>;

/// The area's name in what is printed: "flash".
QLatin1String nameOf(Finding::Area area);
QLatin1String nameOf(Finding::Grade grade);

QJsonObject toJson(const Finding &finding);
/// Of what toJson() made.
Finding findingOf(const QJsonObject &object);

/// 0, or the status of the first area in which something is wrong.
int exitStatusOf(const Findings &findings);

/// One row for each area, in the order in which they are looked at: what stands above makes what stands below worth looking at.
struct AreaRow
{
    Finding::Area area;
    const char *name;
    int exitStatus; ///< 0 for an area in which nothing is ever wrong
    const char *meaning; ///< of the status, for the help
};
constexpr AreaRow areas[] = {
    {Finding::Area::Library, "library", 10, "another version of the library is loaded than came with this program"},
    {Finding::Area::Platform, "platform", 11, "the platform's library gives no objects, hangs, crashes, or refuses everything"},
    {Finding::Area::Records, "records", 0, ""},
    {Finding::Area::Flash, "flash", 12, "settings cannot be written, or do not last"},
    {Finding::Area::Settings, "settings", 13, "the settings file cannot be read or is damaged, or a lock is in the way"},
    {Finding::Area::Bus, "bus", 14, "audio focus cannot be asked for over a bus"},
    {Finding::Area::Log, "log", 0, ""},
};

#endif
