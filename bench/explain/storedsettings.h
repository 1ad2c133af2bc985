#ifndef STOREDSETTINGS_H
#define STOREDSETTINGS_H

#include "loggedrequest.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>
#include <map>
#include <optional>

class SettingsReader;

/// What a unit had stored before it started, as far as it is known.
class StoredSettings
{
public:
    /// As the manager's start tells: it sends almost all to the platform.
    static StoredSettings ofStart(const LoggedRequest &start);
    static StoredSettings ofFile(const SettingsReader &file);

    /// The calls of a scenario that store them, on a unit that is on and has stored nothing; none for what the library takes then anyway.
    QStringList statements() const;

    /// Whether the home screen is the one with louder defaults, which a settings file does not say.
    bool isLargeHome() const { return m_isLargeHome; }
    void setLargeHome(bool isLarge) { m_isLargeHome = isLarge; }

private:
    struct Microphone
    {
        std::optional<int> gain; ///< dB
        std::optional<int> delay;
    };

    bool m_isLargeHome = false;
    std::map<int, int> m_volumes; // by type
    std::optional<int> m_microphoneVolume;
    std::optional<bool> m_isOriginalMicrophone;
    std::map<bool, Microphone, std::greater<>> m_microphones; // the original one first
    std::optional<int> m_equalizerType;
    std::map<int, int> m_customGains; // by band, as stored
};

#endif
