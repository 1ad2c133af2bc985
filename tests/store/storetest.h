#ifndef STORETEST_H
#define STORETEST_H

#include <logrecorder.h>
#include <platform.h>

#include <QtCore/QObject>

#include <memory>

/// Sanitizers make processes start some ten times slower: they get fewer rounds.
#if defined(NDEBUG)
constexpr bool isFast = true;
#else
constexpr bool isFast = false;
#endif

/// Base of the store's tests: each test function starts with an empty flash partition and a platform as new.
class StoreTest : public QObject
{
    Q_OBJECT

protected:
    simulator::Platform *const platform = simulator::Platform::instance();
    std::unique_ptr<LogRecorder> log;

private Q_SLOTS:
    void init();
    void cleanup();
};

#endif
