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
        QVariant stored; ///< a text; invalid where the file has no such key
        QString defaultText; ///< what holds then; empty for a key that the library does not know
        QString meaning;
        bool isKnown; ///< to the library
        QString inEffect; ///< what the library's store reads; empty for a key that it does not know
        QString problem; ///< why that is not what is stored, or may not be what was meant; empty where all is well
    };

    explicit SettingsReader(const QString &file);

    /// Also where it is there but cannot be reached.
    static bool exists(const QString &file);

    QString file() const;
    bool exists() const;
    /// False where there is a file of which nothing could be read; problem() says why. True where there is no file.
    bool isReadable() const;
    /// Empty, or why the file, or some of it, could not be read as settings.
    QString problem() const;
    /// The library's keys in a fixed order, then the unknown ones by name.
    QVector<Setting> settings() const;
    /// Reads the file anew.
    void reload();

    /// A settings file has some hundred bytes; a larger one than this is something else.
    static constexpr int sizeLimit = 1024 * 1024;

private:
    QString m_path;
    bool m_readable = true;
    QMap<QString, QVariant> m_values;
    QMap<QString, QVariant> m_storeValues; // as the library's store reads the file
    QString m_readProblem;
};

#endif
