#include "host/browser/BrowserTest.h"

#include <gmock/gmock.h>

#include <QMessageBox>

#include <sys/stat.h>

namespace {

class ImportJobPosix : public test::BrowserTest
{};

// Who opened it would wait until somebody writes into it.
TEST_F(ImportJobPosix, DoesNotOpenAPipe)
{
    openWindow();
    const fileString pipe = folder() / U"pipe.calib";
    ASSERT_EQ(::mkfifo(pipe.utf8().c_str(), 0600), 0);
    window().openFiles({qtPath(pipe)});
    waitForJob();
    auto* const box = named<QMessageBox>("problemBox");
    ASSERT_NE(box, nullptr);
    EXPECT_THAT(box->text().toStdString(), testing::EndsWith("pipe.calib: is not a file"));
}

}  // namespace
