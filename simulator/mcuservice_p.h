#ifndef MCUSERVICE_P_H
#define MCUSERVICE_P_H

#include <mcuservice.h>

namespace simulator
{

/// The MCU service of the simulated car. Never destroyed, like the platform.
class McuService final : public zelmcu::ZEL_McuService
{
public:
    static McuService *instance();

    void reportReverseGear(bool engaged);

private:
    McuService() = default;
    ~McuService() override = default;
};

} // namespace simulator

#endif
