#include "host/browser/makers/DataThread.h"

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

DataThread::DataThread(QObject* parent) : QObject(parent)
{
    thread_.setMaxThreadCount(1);
}

DataThread::~DataThread()
{
    thread_.waitForDone();
}

void DataThread::run(std::function<Arrival()> job)
{
    ++underWay_;
    thread_.start([this, job = std::move(job)] {
        const auto arrive = [this, arrival = job()] {
            --underWay_;
            arrival();
        };
        QMetaObject::invokeMethod(this, arrive, Qt::QueuedConnection);
    });
}

}  // namespace VelkHost
