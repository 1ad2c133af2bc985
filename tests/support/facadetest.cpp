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
    // Each of the two private parts leaves its App alive, on purpose.
    QCOMPARE(platform->books()->alive(ObjectKind::App), m_appsBefore + 2);
}

QStringList FacadeTest::takeCalls()
{
    const QStringList calls = platform->journal()->calls();
    platform->journal()->clear();
    return calls;
}

QStringList FacadeTest::takeCallsAndLifetimes()
{
    const QStringList calls = platform->journal()->calls(Journal::Lifetimes::Include);
    platform->journal()->clear();
    return calls;
}
