#include "host/browser/Worker.h"

#include "host/browser/language/Reasons.h"

#include <exception>
#include <utility>

namespace VelkHost {

QString failureOf(const std::function<void()>& work)
{
    try {
        work();
        return {};
    } catch (const std::exception& error) {
        return failureText(error);
    }
}

Worker::Worker(QObject* parent) : QObject(parent)
{
    thread_.setMaxThreadCount(1);
}

Worker::~Worker()
{
    thread_.waitForDone();
}

void Worker::run(std::function<Arrival()> job)
{
    ++underWay_;
    thread_.start([this, job = std::move(job), drops = drops_.load()] {
        const auto arrive = [this, arrival = drops == drops_ ? job() : Arrival()] {
            --underWay_;
            if (arrival)
                arrival();
        };
        QMetaObject::invokeMethod(this, arrive, Qt::QueuedConnection);
    });
}

void Worker::drop()
{
    ++drops_;
}

}  // namespace VelkHost
