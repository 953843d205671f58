#include <VelkCommon/Files/FileSearch.h>

#include "support/TestHost.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace {

using FileSearchTest = test::TestHost;

TEST_F(FileSearchTest, TellsTheHostTheFolder)
{
    std::vector<fileString> folders;
    auto services = this->services();
    services.fileSearchReset = [&](const fileString& folder) { folders.push_back(folder); };
    Velk::installHost(services);
    FileSearch::get().resetFileSearch(std::string("/a/"));
    FileSearch::get().resetFileSearch(std::string("/b"));
    EXPECT_THAT(folders, testing::ElementsAre(fileString(std::string("/a/")), fileString(std::string("/b"))));
    EXPECT_EQ(&FileSearch::get(), &FileSearch::get());
}

TEST_F(FileSearchTest, NeedsNoHost)
{
    Velk::installHost({});
    EXPECT_NO_THROW(FileSearch::get().resetFileSearch(folder()));
}

TEST_F(FileSearchTest, SurvivesAHostThatThrows)
{
    auto services = this->services();
    services.fileSearchReset = [](const fileString&) { throw std::runtime_error("host"); };
    Velk::installHost(services);
    EXPECT_NO_THROW(FileSearch::get().resetFileSearch(folder()));
}

}  // namespace
