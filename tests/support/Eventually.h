#pragma once

#include "support/Waiting.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

namespace test {

/// Runs the event loop until an event makes `condition` hold; fails the test when none does.
template <typename Condition>
void eventually(Condition condition)
{
    const QDeadlineTimer end(patience);
    QTimer awakening;  // wakes a loop that has nothing to do
    awakening.start(patience);
    while (!condition() && !end.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    EXPECT_TRUE(condition()) << "it did not come about";
}

}  // namespace test
