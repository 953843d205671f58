#include "host/support/SystemChannel.h"

#include "support/Processes.h"
#include "support/RuntimeFolder.h"

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <unistd.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VelkHost::connectToChannel;
using VelkHost::Listening;
using VelkHost::listenOnChannel;

/// The folder for sockets is the test's own.
class SystemChannelFiles : public testing::Test
{
protected:
    fileString sockets() const { return runtime_.path() / U"velk"; }
    const fileString& runtime() const { return runtime_.path(); }
    std::string name() const { return runtime_.freshName(); }

    static mode_t rightsOf(const fileString& path)
    {
        struct stat status = {};
        EXPECT_EQ(::stat(path.utf8().c_str(), &status), 0) << path;
        return status.st_mode & 0777;
    }

    static bool reaches(const std::string& name)
    {
        return connectToChannel(name, std::chrono::steady_clock::now()) != nullptr;
    }

private:
    test::RuntimeFolder runtime_;
};

TEST_F(SystemChannelFiles, AreForThisUserAlone)
{
    const Listening listening = listenOnChannel(name());
    ASSERT_NE(listening.listener, nullptr);
    EXPECT_EQ(rightsOf(sockets()), 0700U);
}

TEST_F(SystemChannelFiles, GoWithTheListener)
{
    {
        const Listening listening = listenOnChannel(name());
        ASSERT_NE(listening.listener, nullptr);
        EXPECT_THAT(test::listFolder(sockets()), ElementsAre(name() + ".lock", name() + ".socket"));
    }
    EXPECT_THAT(test::listFolder(sockets()), IsEmpty());
}

TEST_F(SystemChannelFiles, OfAKilledProgramAreInNobodysWay)
{
    test::Signal listens;
    test::Child program([&] {
        const Listening listening = listenOnChannel(name());
        ASSERT_NE(listening.listener, nullptr);
        listens.send();
        listening.listener->next();
    });
    listens.wait();
    EXPECT_TRUE(listenOnChannel(name()).isTaken);
    program.kill();
    ASSERT_TRUE((sockets() / fileString(name() + ".socket")).pathExists());
    EXPECT_FALSE(reaches(name()));
    const Listening listening = listenOnChannel(name());
    ASSERT_NE(listening.listener, nullptr);
    EXPECT_TRUE(reaches(name()));
}

TEST_F(SystemChannelFiles, AreNeverInAFolderThatOthersCanReach)
{
    ASSERT_EQ(::mkdir(sockets().utf8().c_str(), 0700), 0);
    ASSERT_EQ(::chmod(sockets().utf8().c_str(), 0755), 0);
    const Listening listening = listenOnChannel(name());
    EXPECT_THAT(test::listFolder(sockets()), IsEmpty());
    ASSERT_NE(listening.listener, nullptr) << "there is another folder for them";
    EXPECT_TRUE(reaches(name()));
}

TEST_F(SystemChannelFiles, CannotHaveNamesThatAreTooLong)
{
    const Listening listening = listenOnChannel(std::string(200, 'x'));
    EXPECT_EQ(listening.listener, nullptr);
    EXPECT_FALSE(listening.isTaken);
    EXPECT_FALSE(reaches(std::string(200, 'x')));
}

TEST_F(SystemChannelFiles, LinksLeadToTheSamePath)
{
    const fileString link = runtime() / U"link";
    ASSERT_EQ(::symlink(runtime().utf8().c_str(), link.utf8().c_str()), 0);
    EXPECT_EQ(VelkHost::pathWithoutLinks(link), VelkHost::pathWithoutLinks(runtime()));
}

}  // namespace
