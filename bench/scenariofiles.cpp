#include "scenariofiles.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

QString ScenarioFiles::standardInput()
{
    return QStringLiteral("-");
}

QString ScenarioFiles::installedFolder()
{
    // Below the prefix, wherever that is; the build tree looks the same.
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../share/qzaudio/scenarios"));
}

QStringList ScenarioFiles::find(const QString &word, QString &problem)
{
    const QFileInfo info(word);
    if (word == standardInput())
        return {word};
    if (info.isDir()) {
        QStringList files = inFolder(word);
        if (files.isEmpty())
            problem = QStringLiteral("there is no scenario in this folder");
        return files;
    }
    if (info.exists())
        return {word};
    const bool isName = !word.contains(QLatin1Char('/')) && !word.endsWith(QLatin1String(".js"));
    const QString installed = installedFolder() + QLatin1Char('/') + word + QStringLiteral(".js");
    if (isName && QFile::exists(installed))
        return {installed};
    problem = isName ? QStringLiteral("there is no such file, and no scenario of this name comes with the bench (--list has them)")
                     : QStringLiteral("there is no such file");
    return {};
}

QStringList ScenarioFiles::inFolder(const QString &folder)
{
    QStringList files;
    const QStringList names = QDir(folder).entryList({QStringLiteral("*.js")}, QDir::Files, QDir::Name);
    for (const QString &name : names)
        files.append(QDir::cleanPath(folder) + QLatin1Char('/') + name);
    return files;
}

QString ScenarioFiles::title(const QString &file)
{
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        return {};
    QString text;
    while (!source.atEnd()) {
        constexpr int longest = 1000;
        const QString line = QString::fromUtf8(source.readLine(longest)).trimmed();
        if (!line.startsWith(QLatin1String("//")))
            break;
        text += (text.isEmpty() ? QString() : QStringLiteral(" ")) + line.mid(2).trimmed();
    }
    const int end = text.indexOf(QStringLiteral(". "));
    return end < 0 ? text : text.left(end + 1);
}
