#ifndef SIMULATORPLUGIN_H
#define SIMULATORPLUGIN_H

#include <QtQml/QQmlExtensionPlugin>

/// The QML module QzAudio.Simulator: the simulated platform as Platform, and SimulatorTypes.
class SimulatorPlugin : public QQmlExtensionPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QQmlExtensionInterface_iid)

public:
    void registerTypes(const char *uri) override;
};

#endif
