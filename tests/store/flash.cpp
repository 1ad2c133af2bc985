#include "flash.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QList>

namespace
{

QString pathOf(const QString &name)
{
    return flash::folder() + QLatin1Char('/') + name;
}

} // namespace

QString flash::folder()
{
    return QStringLiteral("/media/flash/nvm");
}

QString flash::settingsFile()
{
    return pathOf(QStringLiteral("audioData.db"));
}

void flash::clean()
{
    QDir().mkpath(folder());
    const QStringList all = names();
    for (const QString &name : all) {
        if (!QFile::remove(pathOf(name)))
            QDir(pathOf(name)).removeRecursively();
    }
}

QStringList flash::names()
{
    return QDir(folder()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System, QDir::Name);
}

QByteArray flash::content(const QString &name)
{
    QFile file(pathOf(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void flash::setContent(const QByteArray &content, const QString &name)
{
    static QDateTime last = QDateTime::currentDateTime().addSecs(-3600);
    last = last.addMSecs(1);
    QFile file(pathOf(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush()
        || !file.setFileTime(last, QFileDevice::FileModificationTime))
        qFatal("cannot write %s", qUtf8Printable(file.fileName()));
}

flash::Entries flash::parse(const QByteArray &content)
{
    Entries entries;
    QByteArray group = "General";
    const QList<QByteArray> lines = content.split('\n');
    for (const QByteArray &line : lines) {
        const int separator = line.indexOf('=');
        if (line.startsWith('[') && line.endsWith(']'))
            group = line.mid(1, line.size() - 2);
        else if (separator > 0)
            entries.insert(group + '/' + line.left(separator), line.mid(separator + 1));
        else if (!line.isEmpty())
            entries.insert("?", line);
    }
    return entries;
}

flash::Entries flash::entries()
{
    return parse(content());
}

QByteArray flash::fullSettings()
{
    QByteArray text = "[EQ]\nType=4\n";
    for (int band = 0; band < 16; ++band)
        text += "Custom" + QByteArray::number(band) + '=' + QByteArray::number(band * 2 - 40) + '\n';
    text += "\n[Volume]\n";
    for (int type = 0; type < 6; ++type)
        text += QByteArray::number(type) + '=' + QByteArray::number(type + 1) + '\n';
    text += "VolumeMic=91\nLoudness=false\nMicType=false\nAutoMicGainOrig=5\nAutoMicGainArm=6\nMicDelayOrig=7\nMicDelayArm=8\n"
            "Unknown=kept\n\n[Elsewhere]\nKey=also kept\nempty=\n";
    return text;
}
