#include "host/browser/Worker.h"

#include "host/browser/language/Reasons.h"

#include <VelkLibrary/ErrorLog.h>

#include <exception>
#include <new>
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

/// An exception that left the thread would end the program. Lack of memory has an outcome of its own; any other failure
/// is one that nobody foresaw.
Worker::Arrival arrivalOf(const std::function<Worker::Arrival()>& job, const Worker::Arrival& ranOut)
{
    try {
        return job();
    } catch (const std::bad_alloc&) {
        return ranOut;
    } catch (const std::exception& error) {
        Library::ErrorLog() << "Unexpected failure:  " << failureText(error).toStdString() << "\n";
        return {};
    }
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

void Worker::run(std::function<Arrival()> job, Arrival ranOut)
{
    ++underWay_;
    thread_.start([this, job = std::move(job), ranOut = std::move(ranOut), drops = drops_.load()] {
        const auto arrive = [this, arrival = drops == drops_ ? arrivalOf(job, ranOut) : Arrival()] {
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
