#include "platform.h"

#include <settingsprovider.h>

namespace vd
{

SettingsProvider *SettingsProvider::instance()
{
    static SettingsProvider provider;
    return &provider;
}

int SettingsProvider::getHomeUiType()
{
    return simulator::Platform::instance()->homeUiType();
}

} // namespace vd
