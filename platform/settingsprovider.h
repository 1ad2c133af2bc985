#ifndef SETTINGSPROVIDER_H
#define SETTINGSPROVIDER_H

namespace vd
{

/// The unit's settings provider, as far as this system uses it.
class SettingsProvider
{
public:
    static SettingsProvider *instance();

    /// Type of the home screen. Type 7 has volume defaults of its own.
    int getHomeUiType();
};

} // namespace vd

#endif
