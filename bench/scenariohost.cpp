#include "scenariohost.h"

#include "headunit.h"
#include "qmlaudiofocus.h"
#include "scriptcall.h"
#include "settingsfile.h"
#include "timeline.h"

#include "virtualclock.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QTimer>
#include <QtQml/QQmlEngine>

#include <cmath>

ScenarioHost::ScenarioHost(Timeline &shownIn, HeadUnit &drivenUnit, const QStringList &programLines, ScenarioResult &collected, QObject *parent)
    : QObject(parent)
    , timeline(shownIn)
    , unit(drivenUnit)
    , lines(programLines)
    , result(collected)
{
}

void ScenarioHost::say(const QString &text)
{
    timeline.heading(text);
}

void ScenarioHost::beginRequest(const QString &request)
{
    timeline.beginRequest(request);
}

void ScenarioHost::endRequest(const QString &requestResult)
{
    timeline.endRequest(requestResult);
}

void ScenarioHost::note(const QString &text)
{
    timeline.note(text);
}

void ScenarioHost::check(bool passed, int line, const QString &cause)
{
    QString text = lines.value(line - 1).trimmed();
    if (text.endsWith(QLatin1Char(';')))
        text.chop(1);
    result.checks.append({line, text, passed, passed ? QString() : cause, {}});
    timeline.check(result.checks.constLast());
}

void ScenarioHost::wait(double milliseconds)
{
    // A week of driving; also what a QTimer's int holds.
    constexpr double longest = 7.0 * 24 * 60 * 60 * 1000;
    if (!(milliseconds >= 0 && milliseconds <= longest) || std::trunc(milliseconds) != milliseconds) {
        throwScriptError(
            this, QJSValue::RangeError, QStringLiteral("wait() takes whole milliseconds from 0 to %1, not %2").arg(longest, 0, 'f', 0).arg(milliseconds));
        return;
    }
    if (simulator::VirtualClock *const clock = simulator::VirtualClock::installed()) {
        clock->advance(qint64(milliseconds));
        return;
    }
    QEventLoop loop;
    QTimer::singleShot(int(milliseconds), Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

double ScenarioHost::now()
{
    return double(timeline.now());
}

void ScenarioHost::powerOn()
{
    unit.manager();
}

void ScenarioHost::powerOff()
{
    unit.switchOff();
}

void ScenarioHost::eraseSettings()
{
    if (unit.isOn()) {
        throwScriptError(this, QJSValue::GenericError, QStringLiteral("switch the unit off before erasing its settings"));
        return;
    }
    const QString file = SettingsFile::path();
    if (QFile::exists(file) && !QFile::remove(file))
        throwScriptError(this, QJSValue::GenericError, QStringLiteral("%1 cannot be removed").arg(file));
}

bool ScenarioHost::isOn()
{
    return unit.isOn();
}

QObject *ScenarioHost::makeFocusClient()
{
    auto *const client = new QmlAudioFocus(this);
    QQmlEngine::setObjectOwnership(client, QQmlEngine::CppOwnership);
    focusClients.append(client);
    return client;
}

void ScenarioHost::deliverFocusChanges()
{
    for (QmlAudioFocus *const client : qAsConst(focusClients))
        QCoreApplication::sendPostedEvents(client, QEvent::MetaCall);
}
