#include "storelife.h"

#include "powercut.h"

#include <logrecorder.h>

#include <qzaudio/audiodatabase.h>

#include <QtCore/QDateTime>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QSettings>

#include <algorithm>
#include <functional>

using audio::AudioDataBase;

namespace
{

constexpr int promptlyMs = 10000; // far less than the 30 seconds that a dead process's lock file could cost
constexpr int lastValue = 777; // of the save that comes last of all
const char *const lastKey = "5";

QString group()
{
    return QStringLiteral("Volume");
}

/// What differs from what should be there: values that were found, and keys that were not.
QString text(const flash::Entries &found, const flash::Entries &expected)
{
    QByteArray text;
    for (auto entry = found.begin(); entry != found.end(); ++entry) {
        if (!expected.contains(entry.key()) || expected.value(entry.key()) != entry.value())
            text += ' ' + entry.key() + '=' + entry.value();
    }
    for (auto entry = expected.begin(); entry != expected.end(); ++entry) {
        if (!found.contains(entry.key()))
            text += " no " + entry.key();
    }
    return QString::fromUtf8(text);
}

/// Values of "Volume" as another reader has them, against those that stand in the file.
QString differenceOf(const flash::Entries &entries, const char *reader, const std::function<QString(const QString &)> &valueOf)
{
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        if (!entry.key().startsWith("Volume/"))
            continue;
        const QString key = QString::fromLatin1(entry.key().mid(7));
        if (valueOf(key) != QLatin1String(entry.value()))
            return QStringLiteral("%1 reads %2 of Volume/%3, not %4").arg(QLatin1String(reader), valueOf(key), key, QLatin1String(entry.value()));
    }
    return {};
}

QString problemOfReaders(const flash::Entries &found)
{
    AudioDataBase store;
    QString difference
        = differenceOf(found, "the library", [&store](const QString &key) { return store.data(group(), key, QStringLiteral("default")).toString(); });
    if (!difference.isEmpty())
        return difference;
    const QSettings settings(flash::settingsFile(), QSettings::IniFormat);
    return differenceOf(
        found, "QSettings", [&settings](const QString &key) { return settings.value(group() + QLatin1Char('/') + key, QStringLiteral("default")).toString(); });
}

QString problemOfLeftovers(const QStringList &kept)
{
    QStringList known = kept + QStringList{QStringLiteral("audioData.db"), QStringLiteral("audioData.db.lock"), QStringLiteral("audioData.db.new-N")};
    const QStringList names = flash::names();
    for (const QString &name : names) {
        if (!known.removeOne(storelife::kindOfName(name)))
            return QStringLiteral("one %1 too many: %2").arg(storelife::kindOfName(name), names.join(QLatin1Char(' ')));
    }
    return {};
}

QString problemOfNextSave(flash::Entries expected, const QStringList &kept, LogRecorder &log)
{
    log.take();
    QElapsedTimer timer;
    timer.start();
    AudioDataBase().save(group(), QLatin1String(lastKey), lastValue);
    if (timer.elapsed() > promptlyMs)
        return QStringLiteral("the next save took %1 ms").arg(timer.elapsed());
    expected.insert(QByteArray("Volume/") + lastKey, QByteArray::number(lastValue));
    if (flash::entries() != expected)
        return QStringLiteral("the next save made of it:%1").arg(text(flash::entries(), expected));
    const QStringList names = flash::names();
    for (const QString &name : names) {
        if (name != QLatin1String("audioData.db") && !kept.contains(name))
            return QStringLiteral("the next save left %1").arg(names.join(QLatin1Char(' ')));
    }
    const QList<LogRecorder::Line> lines = log.take();
    for (const LogRecorder::Line &line : lines) {
        if (line.level == QtCriticalMsg)
            return QLatin1String("the next save said: ") + line.text;
    }
    return {};
}

} // namespace

storelife::Saves storelife::savesOf(const char *letters)
{
    Saves saves;
    for (const char *letter = letters; *letter; ++letter)
        saves.append({QString::number(*letter - 'a'), 1234 + saves.size()});
    return saves;
}

QVector<flash::Entries> storelife::versions(const flash::Entries &first, const Saves &saves)
{
    QVector<flash::Entries> all{first};
    for (const Save &save : saves) {
        flash::Entries next = all.last();
        next.remove("?"); // a line that cannot be read
        next.insert("Volume/" + save.key.toLatin1(), QByteArray::number(save.value));
        all.append(next);
    }
    return all;
}

void storelife::save(const Saves &saves)
{
    const LogRecorder log;
    AudioDataBase store;
    powercut::stop();
    for (const Save &save : saves) {
        store.save(group(), save.key, save.value);
        powercut::tellStep();
    }
    powercut::stop();
}

void storelife::startAndSave(const Save &save)
{
    const LogRecorder log;
    powercut::stop();
    AudioDataBase store;
    store.save(group(), save.key, save.value);
    powercut::tellStep();
    powercut::stop();
}

storelife::Folder storelife::folder()
{
    Folder folder;
    const QStringList names = flash::names();
    for (const QString &name : names)
        folder.insert(name.toLatin1(), flash::content(name));
    return folder;
}

QString storelife::kindOfName(const QString &name)
{
    static const QRegularExpression temporary(QStringLiteral("\\AaudioData\\.db\\.new-[0-9]+\\z"));
    return temporary.match(name).hasMatch() ? QStringLiteral("audioData.db.new-N") : name;
}

storelife::Folder storelife::kindOf(const Folder &folder)
{
    Folder kind;
    for (auto file = folder.begin(); file != folder.end(); ++file)
        kind.insert(kindOfName(QString::fromLatin1(file.key())).toLatin1(), file.value());
    return kind;
}

void storelife::setFolder(const Folder &folder)
{
    // Each time another one: QSettings takes files of the same size and time for the same.
    static QDateTime time;
    time = std::max(time.addMSecs(1), QDateTime::currentDateTime().addSecs(-1));
    flash::clean();
    for (auto content = folder.begin(); content != folder.end(); ++content) {
        QFile file(flash::folder() + QLatin1Char('/') + QString::fromLatin1(content.key()));
        if (!file.open(QIODevice::WriteOnly) || file.write(content.value()) != content.value().size() || !file.flush()
            || !file.setFileTime(time, QFileDevice::FileModificationTime))
            qFatal("cannot write %s", qUtf8Printable(file.fileName()));
    }
}

QString storelife::problemOf(const QVector<flash::Entries> &versions, const QStringList &kept)
{
    LogRecorder log;
    const flash::Entries found = flash::entries();
    if (!versions.contains(found))
        return QStringLiteral("was never whole, or is too old:%1").arg(text(found, versions.last()));
    QString problem = problemOfLeftovers(kept);
    if (problem.isEmpty())
        problem = problemOfReaders(found);
    flash::Entries readable = found;
    readable.remove("?");
    return problem.isEmpty() ? problemOfNextSave(readable, kept, log) : problem;
}
