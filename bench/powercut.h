#ifndef POWERCUT_H
#define POWERCUT_H

#include <QtCore/QString>
#include <QtCore/QVector>

#include <optional>

/**
 * Takes the power from a unit in the middle of a save, for real: a process of its own is killed while it writes the settings file.
 *
 * The flash is the library's own folder as this process sees it. Switch the unit of this process off before or afterwards: it knows nothing
 * of the cut.
 */
namespace PowerCut
{
/// What lies on the flash.
struct File
{
    QString name; ///< without the folder: "audioData.db.lock"
    qint64 size = 0; ///< bytes
    QString meaning;
};

struct Outcome
{
    bool isCut = false; ///< false where the save was done before it came to that byte, or the line saves nothing
    QVector<File> files; ///< that were left, by name

    /// "cut at byte 30; left: audioData.db (67 bytes), audioData.db.lock (0 bytes), audioData.db.new (30 bytes)"
    QString toText(qint64 byte) const;
};

/**
 * Lets a unit that has just started up do a line of a scenario, such as "AudioPolicy.setVolume(0, 7, true)", and ends it when a save of that
 * line is to write more than @p byte bytes. The save of the start-up itself leaves no trace in the settings file. Waits until it is over,
 * which takes some 0.2 s.
 *
 * @param problem receives why there is no outcome: the line failed, or no unit could be started
 * @param program the bench; beside this process' program by default
 */
std::optional<Outcome> whileSaving(qint64 byte, const QString &line, QString &problem, const QString &program = {});

/// What lies in a folder with a flash's files, by name. A folder that is missing has none.
QVector<File> filesIn(const QString &folder);
} // namespace PowerCut

#endif
