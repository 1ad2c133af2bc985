#include "mcuservice_p.h"

namespace simulator
{

McuService *McuService::instance()
{
    static auto *const service = new McuService;
    return service;
}

void McuService::reportReverseGear(bool engaged)
{
    Q_EMIT mcuBackCarSetMute(engaged);
}

} // namespace simulator

namespace zelmcu
{

ZEL_McuService::ZEL_McuService(QObject *parent)
    : QObject(parent)
{
}

ZEL_McuService::~ZEL_McuService() = default;

ZEL_McuService *ZEL_McuService::instance()
{
    return simulator::McuService::instance();
}

} // namespace zelmcu
