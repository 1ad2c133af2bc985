#include "storetest.h"

#include "flash.h"

void StoreTest::init()
{
    flash::clean();
    platform->reset();
    log = std::make_unique<LogRecorder>();
}

void StoreTest::cleanup()
{
    log.reset();
}
