#include "VelkLibrary/Update/EventLoop.h"

#include <QCoreApplication>

namespace test {

void ensureApplication()
{
    static int argumentCount = 1;
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static QCoreApplication application(argumentCount, arguments);
}

void deliverEvents()
{
    QCoreApplication::sendPostedEvents();
}

}  // namespace test
