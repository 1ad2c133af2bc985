#ifndef SETTINGSREADER_H
#define SETTINGSREADER_H

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtCore/QVector>

/// What a settings file holds, read without the library and without changing it.
class SettingsReader
{
public:
    /// One key, stored or not.
    struct Setting
    {
        QString key; ///< "Volume/0"
        QVariant stored; ///< invalid where the file has no such key
        QString defaultText; ///< what holds then; empty for a key that the library does not know
        QString meaning;
    };

    explicit SettingsReader(const QString &file);

    QString file() const;
    bool exists() const;
    /// Empty, or why the file could not be read as settings.
    QString problem() const;
    /// The library's keys in a fixed order, then the unknown ones by name.
    QVector<Setting> settings() const;
    /// Reads the file anew.
    void reload();

    /// For people: a text as it is, a list by its elements.
    static QString text(const QVariant &value);

private:
    QString path;
    QMap<QString, QVariant> values;
    QString readProblem;
};

#endif
