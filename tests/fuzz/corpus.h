#ifndef CORPUS_H
#define CORPUS_H

#include <QtCore/QByteArray>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtTest/QtTest>

#include <string_view>

/// What is kept for a target, to be run by its test.
namespace corpus
{

inline std::string_view viewOf(const QByteArray &bytes)
{
    return {bytes.constData(), std::size_t(bytes.size())};
}

/// A row for each file, with its "bytes".
inline void addRows(const QString &folder)
{
    QTest::addColumn<QByteArray>("bytes");
    const QStringList names = QDir(folder).entryList(QDir::Files, QDir::Name);
    QVERIFY2(!names.isEmpty(), qPrintable(folder));
    for (const QString &name : names) {
        QFile file(folder + QLatin1Char('/') + name);
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(name));
        QTest::newRow(qPrintable(name)) << file.readAll();
    }
}

} // namespace corpus

#endif
