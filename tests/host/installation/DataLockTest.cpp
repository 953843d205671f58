#include "host/installation/DataLock.h"

#include "host/fixtures/Fixtures.h"
#include "host/installation/DataError.h"

#include <optional>
#include <stop_token>

namespace {

using testing::IsEmpty;

class DataLock : public test::TestHost
{
protected:
    const fileString file_ = folder() / U"data" / U"file.json";
};

TEST_F(DataLock, IsAFileBesideTheDataFileWhileItIsHeld)
{
    {
        const FileLock lock = VelkHost::lockFile(file_, "a test");
        EXPECT_TRUE(lock);
        EXPECT_THAT(test::listFolder(folder() / U"data"), testing::ElementsAre("file.json.lock"));
    }
    EXPECT_THAT(test::listFolder(folder() / U"data"), IsEmpty());
}

TEST_F(DataLock, TellsWhoHasIt)
{
    const FileLock lock = VelkHost::lockFile(file_, "the first test");
    std::stop_source noPatience;
    noPatience.request_stop();
    try {
        const FileLock second = VelkHost::lockFile(file_, "the second test", noPatience.get_token());
        FAIL() << "both have it";
    } catch (const VelkHost::DataError& error) {
        EXPECT_EQ(std::string(error.what()), file_.utf8() + " is in use: the first test");
    }
}

TEST_F(DataLock, UpdatesTakeTurns)
{
    std::optional<FileLock> first(VelkHost::lockUpdates("an update"));
    std::stop_source noPatience;
    noPatience.request_stop();
    EXPECT_THROW(VelkHost::lockUpdates("another update", noPatience.get_token()), VelkHost::DataError);
    first.reset();
    EXPECT_TRUE(VelkHost::lockUpdates("another update"));
}

}  // namespace
