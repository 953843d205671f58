#include "VelkLibrary/Update/EventLoop.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>

#include <exception>
#include <thread>

namespace test {

void ensureApplication()
{
    static int argumentCount = 1;
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static QCoreApplication application(argumentCount, arguments);
}

void runBesideEventLoop(const std::function<void()>& work)
{
    QEventLoop loop;
    std::thread worker([&] {
        try {
            work();
        } catch (const std::exception& error) {
            ADD_FAILURE() << "the worker threw: " << error.what();
        }
        QMetaObject::invokeMethod(&loop, "quit", Qt::QueuedConnection);
    });
    loop.exec();
    worker.join();
    deliverEvents();
}

void deliverEvents()
{
    QCoreApplication::sendPostedEvents();
}

}  // namespace test
