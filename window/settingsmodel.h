#ifndef SETTINGSMODEL_H
#define SETTINGSMODEL_H

#include "roommodel.h"
#include "rowlistmodel.h"

#include <QtCore/QByteArray>
#include <QtCore/QFileSystemWatcher>
#include <QtCore/QMap>
#include <QtCore/QStringList>
#include <QtCore/QTimer>

#include <optional>

/**
 * The settings file as it is on the car's flash, and what can be done to it.
 *
 * What is done to it is steps of the recording: the unit is switched off for it where it is on, and on again.
 */
class SettingsModel : public RoomModel
{
    Q_OBJECT
    /// Where the file is.
    Q_PROPERTY(QString file READ file NOTIFY fileChanged)
    Q_PROPERTY(bool exists READ exists NOTIFY fileChanged)
    /// The file's text; each byte that is no text as a question mark.
    Q_PROPERTY(QString text READ text NOTIFY fileChanged)
    /// Bytes of the file.
    Q_PROPERTY(int size READ size NOTIFY fileChanged)
    /// Why the file, or some of it, cannot be read as settings; empty where all is well.
    Q_PROPERTY(QString problem READ problem NOTIFY fileChanged)
    /// Rows {key, stored ("" not), isStored, defaultText, meaning, inEffect, problem, known}: of the file, or of what is left of it at cut.
    Q_PROPERTY(RowListModel *settings READ settings CONSTANT)
    /// Values of which the library would make something else than what is stored.
    Q_PROPERTY(int problems READ problems NOTIFY settingsChanged)
    /// Rows {name, size, meaning}: what lies on the flash.
    Q_PROPERTY(RowListModel *files READ files CONSTANT)
    /// Byte from which on the file is taken to be cut off; -1 for the file as it is. Changes what is shown only.
    Q_PROPERTY(int cut READ cut WRITE setCut NOTIFY cutChanged)
    /// What is left of the text at cut.
    Q_PROPERTY(QString cutText READ cutText NOTIFY settingsChanged)

    /// What is stored since the start that was asked for here: "Volume/Loudness: true \u2192 false".
    Q_PROPERTY(QStringList startChanges READ startChanges NOTIFY settingsChanged)

    Q_PROPERTY(bool on READ isOn NOTIFY carChanged)
    /// Saves that were noticed.
    Q_PROPERTY(int writes READ writes NOTIFY carChanged)
    /// ms of the car's clock at the last of them; -1 for none.
    Q_PROPERTY(double lastWrite READ lastWrite NOTIFY carChanged)
    /// What made the car write, or that it was done by hand.
    Q_PROPERTY(QString lastCause READ lastCause NOTIFY carChanged)

public:
    explicit SettingsModel(QObject *parent = nullptr);

    QString file() const;
    bool exists() const { return m_exists; }
    QString text() const;
    int size() const { return m_bytes.size(); }
    QString problem() const { return m_problem; }
    RowListModel *settings() { return &m_settings; }
    int problems() const { return m_problems; }
    RowListModel *files() { return &m_files; }
    int cut() const { return m_cut; }
    void setCut(int cut);
    QString cutText() const;
    QStringList startChanges() const { return m_startChanges; }
    bool isOn() const { return m_isOn; }
    int writes() const { return m_writes; }
    double lastWrite() const { return m_lastWrite; }
    QString lastCause() const { return m_lastCause; }

    /// Writes a text into the file.
    Q_INVOKABLE void write(const QString &text);
    /// Writes one value; the rest of the file stays as it is. An empty value takes the key out.
    Q_INVOKABLE void setValue(const QString &key, const QString &value);
    /// Writes what cut leaves, and shows the file as it is then.
    Q_INVOKABLE void cutOff();
    Q_INVOKABLE void erase();
    /// Takes the power from a unit on this flash when a save, that a line brings, is to write this byte. The unit is off then.
    Q_INVOKABLE void cutPower(int byte, const QString &line);
    /// A start, after which the table tells what it made of the file. Switches the unit off before where it is on.
    Q_INVOKABLE void start();
    Q_INVOKABLE void switchOff();

    /// The text with another value of a key; without the key where there is no value.
    static QString withValue(const QString &text, const QString &key, const QString &value);

Q_SIGNALS:
    void fileChanged();
    void settingsChanged();
    void cutChanged();
    void carChanged();

protected:
    void update(const QVariantMap &snapshot) override;

private:
    void follow();
    void look();
    void readSettings();
    void changeWhileOff(const QString &line);

    QFileSystemWatcher m_watcher;
    QTimer m_lookTimer;
    RowListModel m_settings;
    RowListModel m_files;
    bool m_exists = false;
    QByteArray m_bytes;
    QByteArray m_stamp;
    QString m_problem;
    int m_problems = 0;
    int m_cut = -1;
    bool m_isOn = false;
    int m_writes = 0;
    double m_lastWrite = -1;
    QString m_lastCause;
    std::optional<QMap<QString, QString>> m_storedBefore; // the start that was asked for here
    QStringList m_startChanges;
};

#endif
