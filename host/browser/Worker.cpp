#include "host/browser/Worker.h"

#include "host/browser/language/Reasons.h"

#include <VelkLibrary/ErrorLog.h>

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

namespace {

/// An exception that left the thread would end the program. The job has then failed in a way that nobody foresaw.
Worker::Arrival arrivalOf(const std::function<Worker::Arrival()>& job)
{
    Worker::Arrival arrival;
    const QString failure = failureOf([&] { arrival = job(); });
    if (!failure.isEmpty())
        Library::ErrorLog() << "Unexpected failure:  " << failure.toStdString() << "\n";
    return arrival;
}

}  // namespace

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
        const auto arrive = [this, arrival = drops == drops_ ? arrivalOf(job) : Arrival()] {
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
