#include "settingsmodel.h"

#include "powercut.h"
#include "scripttext.h"
#include "settingsreader.h"

#include "settingsfile.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryFile>

#include <algorithm>
#include <utility>

namespace
{

constexpr int lookPeriod = 20; // ms, in which a save's several changes of the folder are one

constexpr char handLine[] = "writeSettings(";

/// Where a section's lines end: before its last empty ones.
int endOfSection(const QStringList &lines, int begin)
{
    int end = begin;
    while (end < lines.size() && !lines.at(end).startsWith(QLatin1Char('[')))
        ++end;
    while (end > begin && lines.at(end - 1).trimmed().isEmpty())
        --end;
    return end;
}

QMap<QString, QString> storedValues(const RowListModel &settings)
{
    QMap<QString, QString> values;
    for (const QVariantMap &row : settings.rows()) {
        if (row.value(QStringLiteral("isStored")).toBool())
            values.insert(row.value(QStringLiteral("key")).toString(), row.value(QStringLiteral("stored")).toString());
    }
    return values;
}

} // namespace

SettingsModel::SettingsModel(QObject *parent)
    : RoomModel(parent)
    , m_settings({"key", "stored", "isStored", "defaultText", "meaning", "inEffect", "problem", "known"})
    , m_files({"name", "size", "meaning"})
{
    m_lookTimer.setSingleShot(true);
    m_lookTimer.setInterval(lookPeriod);
    connect(&m_lookTimer, &QTimer::timeout, this, &SettingsModel::look);
    const auto lookSoon = [this] {
        if (!m_lookTimer.isActive())
            m_lookTimer.start();
    };
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, lookSoon);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, lookSoon);
    connect(this, &RoomModel::deskChanged, this, &SettingsModel::follow);
    connect(this, &RoomModel::activeChanged, this, &SettingsModel::look);
}

QString SettingsModel::file() const
{
    return desk() ? QDir(desk()->flash()).filePath(QFileInfo(SettingsFile::path()).fileName()) : QString();
}

QString SettingsModel::text() const
{
    return QString::fromUtf8(m_bytes);
}

void SettingsModel::setCut(int cut)
{
    const int within = cut < 0 ? -1 : std::min(cut, m_bytes.size());
    if (m_cut == within)
        return;
    m_cut = within;
    readSettings();
    Q_EMIT cutChanged();
}

QString SettingsModel::cutText() const
{
    return QString::fromUtf8(m_cut < 0 ? m_bytes : m_bytes.left(m_cut));
}

void SettingsModel::write(const QString &text)
{
    changeWhileOff(QStringLiteral("writeSettings(%1);").arg(scriptText(text)));
}

void SettingsModel::setValue(const QString &key, const QString &value)
{
    write(withValue(text(), key, value));
}

void SettingsModel::cutOff()
{
    const QString left = cutText();
    setCut(-1);
    write(left);
}

void SettingsModel::erase()
{
    changeWhileOff(QStringLiteral("eraseSettings();"));
}

void SettingsModel::cutPower(int byte, const QString &line)
{
    // A whole line of a scenario ends in a semicolon.
    QString statement = line.trimmed();
    while (statement.endsWith(QLatin1Char(';')))
        statement.chop(1);
    if (!statement.isEmpty())
        changeWhileOff(QStringLiteral("cutPowerWhileSaving(%1, %2);").arg(byte).arg(scriptText(statement)));
}

void SettingsModel::start()
{
    if (!desk())
        return;
    switchOff();
    m_storedBefore = storedValues(m_settings);
    desk()->perform(QStringLiteral("powerOn();"));
}

void SettingsModel::switchOff()
{
    if (m_isOn && desk())
        desk()->perform(QStringLiteral("powerOff();"));
}

QString SettingsModel::withValue(const QString &text, const QString &key, const QString &value)
{
    const QString section = QLatin1Char('[') + key.section(QLatin1Char('/'), 0, 0) + QLatin1Char(']');
    const QString name = key.section(QLatin1Char('/'), 1);
    const QString line = name + QLatin1Char('=') + value;
    QStringList lines = text.split(QLatin1Char('\n'));
    const int heading = lines.indexOf(section);
    if (heading < 0)
        return value.isEmpty() ? text
                               : text + (text.isEmpty() || text.endsWith(QLatin1Char('\n')) ? QString() : QStringLiteral("\n")) + section + QLatin1Char('\n')
                + line + QLatin1Char('\n');
    const int end = endOfSection(lines, heading + 1);
    const auto isOfKey = [&name](const QString &each) { return each.startsWith(name + QLatin1Char('=')); };
    const auto begin = lines.begin() + heading + 1;
    const auto found = std::find_if(begin, lines.begin() + end, isOfKey);
    if (found == lines.begin() + end) {
        if (!value.isEmpty())
            lines.insert(end, line);
    } else if (value.isEmpty()) {
        lines.erase(found);
    } else {
        *found = line;
    }
    return lines.join(QLatin1Char('\n'));
}

void SettingsModel::update(const QVariantMap &snapshot)
{
    const bool isOn = snapshot.value(QStringLiteral("drive")).toMap().value(QStringLiteral("on")).toBool();
    const QVariantMap settings = snapshot.value(QStringLiteral("settings")).toMap();
    const int writes = settings.value(QStringLiteral("writes")).toInt();
    const double lastWrite = settings.value(QStringLiteral("lastWrite"), -1).toDouble();
    const QString cause = settings.value(QStringLiteral("lastCause")).toString();
    const QString shownCause = cause.startsWith(QLatin1String(handLine)) ? tr("by hand") : cause;
    if (isOn == m_isOn && writes == m_writes && lastWrite == m_lastWrite && shownCause == m_lastCause)
        return;
    m_isOn = isOn;
    m_writes = writes;
    m_lastWrite = lastWrite;
    m_lastCause = shownCause;
    Q_EMIT carChanged();
    look();
}

void SettingsModel::follow()
{
    if (!desk())
        return;
    connect(desk(), &Desk::restarted, this, [this] {
        m_storedBefore.reset();
        look();
    });
    look();
}

/// The folder is another one's with each car, and the file with each save.
void SettingsModel::look()
{
    if (!isActive() || !desk())
        return;
    const QString folder = desk()->flash();
    if (!m_watcher.directories().contains(folder) && QFileInfo(folder).isDir())
        m_watcher.addPath(folder);
    if (!m_watcher.files().contains(file()) && QFile::exists(file()))
        m_watcher.addPath(file());

    QVector<QVariantMap> files;
    const QVector<PowerCut::File> found = PowerCut::filesIn(folder);
    for (const PowerCut::File &each : found)
        files.append({{QStringLiteral("name"), each.name}, {QStringLiteral("size"), each.size}, {QStringLiteral("meaning"), each.meaning}});
    m_files.setRows(files);

    const QByteArray stamp = SettingsFile::stamp(file());
    const bool isKnown = stamp == m_stamp && m_settings.count() > 0;
    if (isKnown)
        return;
    m_stamp = stamp;
    QFile source(file());
    m_exists = source.open(QIODevice::ReadOnly);
    m_bytes = m_exists ? source.read(SettingsReader::sizeLimit) : QByteArray();
    m_problem = SettingsReader(file()).problem();
    setCut(-1);
    readSettings();
    Q_EMIT fileChanged();
}

void SettingsModel::readSettings()
{
    QTemporaryFile part;
    QString path = file();
    if (m_cut >= 0 && part.open() && part.write(m_bytes.left(m_cut)) == m_cut && part.flush())
        path = part.fileName();
    const SettingsReader reader(path);
    QVector<QVariantMap> rows;
    m_problems = 0;
    const QVector<SettingsReader::Setting> settings = reader.settings();
    for (const SettingsReader::Setting &setting : settings) {
        m_problems += setting.problem.isEmpty() ? 0 : 1;
        rows.append({{QStringLiteral("key"), setting.key},
                     {QStringLiteral("stored"), setting.stored.toString()},
                     {QStringLiteral("isStored"), setting.stored.isValid()},
                     {QStringLiteral("defaultText"), setting.defaultText},
                     {QStringLiteral("meaning"), setting.meaning},
                     {QStringLiteral("inEffect"), setting.inEffect},
                     {QStringLiteral("problem"), setting.problem},
                     {QStringLiteral("known"), setting.isKnown}});
    }
    m_settings.setRows(rows);
    m_startChanges.clear();
    if (m_storedBefore) {
        const QMap<QString, QString> stored = storedValues(m_settings);
        const QString none = tr("not stored");
        const auto tell = [this, &stored, &none](const QString &key) {
            const QString before = m_storedBefore->value(key, none);
            const QString after = stored.value(key, none);
            if (before != after)
                m_startChanges.append(tr("%1: %2 \u2192 %3").arg(key, before, after));
        };
        QStringList keys = stored.keys();
        keys += m_storedBefore->keys();
        keys.sort();
        keys.removeDuplicates();
        std::for_each(keys.cbegin(), keys.cend(), tell);
    }
    Q_EMIT settingsChanged();
}

void SettingsModel::changeWhileOff(const QString &line)
{
    if (!desk())
        return;
    m_storedBefore.reset();
    switchOff();
    desk()->perform(line);
}
