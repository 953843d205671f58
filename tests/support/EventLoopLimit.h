#pragma once

#include "support/Waiting.h"

#include <QObject>
#include <QTimer>

#include <string>
#include <utility>

namespace test {

/// Gives up when an event loop still runs after all patience; as long as the object lives.
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
