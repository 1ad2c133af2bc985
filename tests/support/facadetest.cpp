#include "facadetest.h"

#include <books.h>
#include <faults.h>
#include <journal.h>

#include <QtTest/QtTest>

using simulator::Journal;
using simulator::ObjectKind;

void FacadeTest::init()
{
    platform->reset();
    m_volumesBefore = platform->books()->alive(ObjectKind::Volume);
    m_appsBefore = platform->books()->alive(ObjectKind::App);
    control = std::make_unique<audio::AudioControl>();
    inner = std::make_unique<audio::AudioControlPrivate>();
    inner->q = control.get();
    appsLeftBehind = 2; // of the two private parts
    platform->journal()->clear();
    log = std::make_unique<LogRecorder>();
}

void FacadeTest::cleanup()
{
    log.reset();
    inner.reset();
    control.reset();
    QCOMPARE(platform->books()->problems(), QStringList());
    QCOMPARE(platform->books()->alive(ObjectKind::Source), 0);
    QCOMPARE(platform->books()->alive(ObjectKind::Mixer), 0);
    QCOMPARE(platform->books()->alive(ObjectKind::Volume), m_volumesBefore);
    QCOMPARE(platform->books()->alive(ObjectKind::App), m_appsBefore + appsLeftBehind);
    platform->reset(); // those Apps are no leftovers to report at exit
}

QStringList FacadeTest::takeCalls()
{
    QStringList calls = platform->journal()->calls();
    platform->journal()->clear();
    return calls;
}

QStringList FacadeTest::takeCallsAndLifetimes()
{
    QStringList calls = platform->journal()->calls(Journal::Lifetimes::Include);
    platform->journal()->clear();
    return calls;
}
