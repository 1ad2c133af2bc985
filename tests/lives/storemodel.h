#ifndef STOREMODEL_H
#define STOREMODEL_H

#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/QString>

#include <array>
#include <optional>

namespace lives
{

/// The settings file: what each key holds.
class FileModel
{
public:
    struct Value
    {
        QString text; ///< as the file has it; of a gain not told
        std::optional<float> gain;
    };

    void setText(const QByteArray &text);
    void erase();
    void save(const QString &key, int value) { insert(key, {QString::number(value), {}}); }
    void save(const QString &key, const QString &value) { insert(key, {value, {}}); }
    void save(const QString &key, bool value) { insert(key, {value ? QStringLiteral("true") : QStringLiteral("false"), {}}); }
    void save(const QString &key, float value) { insert(key, {{}, value}); }
    /// Another one after each change.
    int revision() const { return m_revision; }

    int number(const QString &key, int otherwise) const;
    bool truth(const QString &key, bool otherwise) const;
    /// Without its fraction.
    float gain(const QString &key) const;

    /// Empty where a file has this in it, and else what is different.
    QString differenceTo(const QByteArray &text) const;

private:
    static QMap<QString, QString> parse(const QByteArray &text);
    void insert(const QString &key, const Value &value);

    QMap<QString, Value> m_values;
    int m_revision = 0;
};

/// A settings store: what it has read, and what it keeps.
class StoreModel
{
public:
    explicit StoreModel(FileModel &file)
        : m_file(file)
    {
    }

    /// Reads all, as a store does when it is made.
    void start(int homeUiType);

    int getVolume(int type) const;
    void setVolume(int type, int value, bool save);
    void savevolume();
    int eqType() const { return m_eqType; }
    void setEqType(int type);
    bool loudNess() const { return m_loudness; }
    void setLoudNess(bool on);
    bool micType() const { return m_micType; }
    void setmicType(bool original);
    int micInputValue() const { return m_micInputValue; }
    void setMicInputValue(int value);
    int getCustomEQ(int index) const;
    void setCustomEQ(int value, int index);
    void setAutoMicGain(float gain);
    float getAutoMicGain() const;
    void setHandsfreeDelay(int delay);
    int getHandsfreeDelay() const;

    int getCurrentIndexInItem() const { return getCurrentIndexInDefault(m_eqType); }
    static int getCurrentIndexInDefault(int type) { return type >= 0 && type < 8 ? type : 0; }
    int getNextEqType(bool up) const { return (getCurrentIndexInItem() + (up ? 1 : 7)) % 8; }
    void getGroupDefaultData(QHash<QString, uchar> &out) const;

    const std::array<int, 6> &volumes() const { return m_volumes; }

private:
    FileModel &m_file;
    std::array<int, 6> m_volumes = {};
    std::array<int, 16> m_custom = {};
    int m_eqType = 6;
    int m_micInputValue = 12;
    bool m_loudness = true;
    bool m_micType = true;
};

/// The fixed tables of statuses, channels and curves.
namespace situation
{
int typeOfStatus(int status);
QString sourceOfStatus(int status);
int typeOfChannel(int channel);
QString sourceOfChannel(int channel);
extern const std::array<std::array<float, 16>, 8> curves;
} // namespace situation

} // namespace lives

#endif
