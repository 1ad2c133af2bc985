#ifndef PROGRAMS_H
#define PROGRAMS_H

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QString>

/// A program that the window starts: from beside itself, or from where programs stand in the tree.
inline QString programPath(const QString &name)
{
    const QString folder = QCoreApplication::applicationDirPath();
    const QString beside = folder + QLatin1Char('/') + name;
    return QFile::exists(beside) ? beside : folder + QStringLiteral("/../bin/") + name;
}

#endif
