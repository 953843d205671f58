#pragma once

#include "support/Waiting.h"

#include <QObject>
#include <QTimer>

#include <string>
#include <utility>

namespace test {

/// While the object lives, gives up when an event loop still runs after all patience has been used up.
class EventLoopLimit
{
public:
    explicit EventLoopLimit(std::string what)
    {
        QObject::connect(&timer_, &QTimer::timeout, [what = std::move(what)] { giveUp(what); });
        timer_.start(patience);
    }

private:
    QTimer timer_;
};

}  // namespace test
