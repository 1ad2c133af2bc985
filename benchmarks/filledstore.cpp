#include "filledstore.h"

namespace
{

audio::AudioDataBase *makeFilledStore()
{
    auto *const store = new audio::AudioDataBase;
    store->savevolume();
    store->setMicInputValue(store->micInputValue());
    store->setLoudNess(false);
    store->setEqType(store->eqType());
    for (int band = 0; band < 16; ++band)
        store->setCustomEQ(store->getCustomEQ(band) / 2, band);
    for (const bool isOriginal : {false, true}) {
        store->setmicType(isOriginal);
        store->setAutoMicGain(0);
        store->setHandsfreeDelay(0);
    }
    return store;
}

} // namespace

audio::AudioDataBase &filledStore()
{
    static audio::AudioDataBase *const store = makeFilledStore();
    return *store;
}
