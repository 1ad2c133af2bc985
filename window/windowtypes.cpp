#include "windowtypes.h"

#include "audiooutput.h"
#include "carmodel.h"
#include "desk.h"
#include "drivemodel.h"
#include "focusmodel.h"
#include "listening.h"
#include "microphonemodel.h"
#include "platformmodel.h"
#include "settingsmodel.h"
#include "timelinemodel.h"
#include "responsecurve.h"
#include "tonemodel.h"
#include "windowsettings.h"

#include <QtQml/QQmlEngine>
#include <QtQml/qqml.h>

#include <memory>

/// The QML files stand in a static library, which registers no resources by itself. Qt wants this outside any namespace.
static void registerResources()
{
    Q_INIT_RESOURCE(window);
}

namespace
{

constexpr const char *module = "QzAudio.Desk";

} // namespace

void registerWindowTypes(Desk &desk)
{
    registerResources();
    qmlRegisterSingletonInstance(module, 1, 0, "Desk", &desk);
    qmlRegisterSingletonType<WindowSettings>(module, 1, 0, "WindowSettings", [](QQmlEngine *engine, QJSEngine *) -> QObject * {
        return new WindowSettings(engine); // the engine's own
    });
    qmlRegisterUncreatableType<Recording>(module, 1, 0, "Recording", QStringLiteral("the desk has one"));
    qmlRegisterType<CarModel>(module, 1, 0, "CarModel");
    qmlRegisterType<ToneModel>(module, 1, 0, "ToneModel");
    qmlRegisterType<ResponseCurve>(module, 1, 0, "ResponseCurve");
    qmlRegisterType<DriveModel>(module, 1, 0, "DriveModel");
    qmlRegisterType<FocusModel>(module, 1, 0, "FocusModel");
    qmlRegisterType<MicrophoneModel>(module, 1, 0, "MicrophoneModel");
    qmlRegisterType<PlatformModel>(module, 1, 0, "PlatformModel");
    qmlRegisterType<SettingsModel>(module, 1, 0, "SettingsModel");
    // Models of theirs.
    qmlRegisterAnonymousType<JournalModel>(module, 1);
    qmlRegisterAnonymousType<RowListModel>(module, 1);
    Listening::setOutput([] { return std::make_unique<AudioOutput>(); });
    qmlRegisterType<Listening>(module, 1, 0, "Listening");
    qmlRegisterType<TimelineModel>(module, 1, 0, "TimelineModel");
    qmlRegisterAnonymousType<SpanList>(module, 1);
    qmlRegisterAnonymousType<WhyQuestion>(module, 1);
}
