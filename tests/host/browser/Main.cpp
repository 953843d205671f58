// One application for all tests, as in the program; without a screen.
#include "host/browser/language/Translations.h"

#include <gtest/gtest.h>

#include <QApplication>

int main(int argumentCount, char** arguments)
{
    testing::InitGoogleTest(&argumentCount, arguments);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    // Never destroyed, since the platform without a screen would leave parts of itself behind.
    static const QApplication* const application = new QApplication(argumentCount, arguments);
    (void)application;
    const VelkHost::Translations english(QStringLiteral("en"));
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
