#pragma once

#include "support/Waiting.h"

#include <QDeadlineTimer>
#include <QThread>

#include <functional>
#include <memory>

namespace test {

/// Runs `work` on a thread with a stack of this many bytes; running out of it ends the program.
inline void onSmallStack(unsigned bytes, const std::function<void()>& work)
{
    const std::unique_ptr<QThread> thread(QThread::create(work));
    thread->setStackSize(bytes);
    thread->start();
    if (!thread->wait(QDeadlineTimer(patience)))
        giveUp("the work on a small stack does not end");
}

}  // namespace test
