// Ends with the platform's objects in the state that the argument names; see tst_simulatedplatform.

#include <platform.h>
#include <spaudiosetting.h>

#include <QtCore/QCoreApplication>

#include <cstdio>

using namespace audio::SPAudioSetting;

namespace
{

/// Destroys its object only when static objects are destroyed, as a singleton of a client does.
struct LateClient
{
    Source *source = nullptr;

    LateClient() = default;
    ~LateClient()
    {
        if (!source)
            return;
        source->setHandsfreeDelay(1);
        destroy(source);
    }
    LateClient(const LateClient &) = delete;
    LateClient &operator=(const LateClient &) = delete;
};

LateClient lateClient; // made before the simulator's first use; that is the point, clazy:exclude=non-pod-global-static

void leave(const QByteArray &state)
{
    if (state == "nothing") {
        destroy(createVolume());
    } else if (state == "app") {
        createApp();
    } else if (state == "facade") {
        createVolume();
        createApp();
    } else if (state == "two facades") {
        createVolume();
        createApp();
        createVolume();
        createApp();
    } else if (state == "volume alone") {
        createVolume();
    } else if (state == "source and mixer") {
        createSource();
        createMixer();
    } else if (state == "forgiven") {
        createSource();
        simulator::Platform::instance()->reset();
    } else if (state == "beside forgiven") {
        createVolume();
        createApp();
        simulator::Platform::instance()->reset();
        createApp();
    } else if (state == "late") {
        lateClient.source = createSource();
    } else if (state != "unused") {
        std::fputs("unknown state\n", stderr);
        std::exit(2);
    }
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    leave(argc > 1 ? QByteArray(argv[1]) : QByteArray());
    return 0;
}
