#pragma once

/// @file
/// Waits for programs that a test has started. No wait lasts for ever.

#include "support/Waiting.h"

#include <gtest/gtest.h>

#include <QProcess>

#include <string>

namespace test {

inline constexpr int processPatience = static_cast<int>(patience.count());  // milliseconds

/// Waits until a program runs; fails the test when it does not.
inline void waitForStart(QProcess& process)
{
    EXPECT_TRUE(process.waitForStarted(processPatience))
        << process.program().toStdString() << ": " << process.errorString().toStdString();
}

/// Waits until a program has ended. One that did not start, or that does not end and is killed, fails the test.
inline void waitForEnd(QProcess& process)
{
    const bool ends = process.state() == QProcess::NotRunning || process.waitForFinished(processPatience);
    EXPECT_TRUE(ends && process.error() != QProcess::FailedToStart)
        << process.program().toStdString() << ": " << process.errorString().toStdString();
    if (ends)
        return;
    process.kill();
    process.waitForFinished(processPatience);
}

/// Waits for the next line of a program's output; empty when the program ends before.
inline std::string waitForLine(QProcess& process)
{
    repeatUntil([&] { return process.canReadLine() || process.state() == QProcess::NotRunning; },
                [&] { process.waitForReadyRead(processPatience); });
    return process.readLine().toStdString();
}

}  // namespace test
