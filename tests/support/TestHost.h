#pragma once

#include <VelkCommon/HostServices.h>

#include <gtest/gtest.h>

#include <mutex>
#include <string>
#include <vector>

namespace test {

/// A message as the host received it.
using error::Message;

/// An assertion as the host received it, with its texts copied.
struct Assertion
{
    std::string sourceFile;
    std::size_t line = 0;
    long kind = 0;
    std::string expression;
};

/// A new folder, which the destructor removes with everything in it.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// The absolute path, without a separator at the end.
    const fileString& path() const noexcept { return path_; }
    /// A path in the folder.
    fileString operator/(const std::u32string& name) const { return path_ / name; }

private:
    fileString path_;
};

/// The base of tests that need a host: each test gets one of its own, with all well-known folders in a
/// temporary folder (they exist), and keeps what is reported to it.
class TestHost : public testing::Test
{
protected:
    TestHost();
    ~TestHost() override;

    /// A host with the temporary folders that records messages and assertions. Change it and
    /// install it again where a test needs more.
    Velk::HostServices services();

    const fileString& folder() const noexcept { return folder_.path(); }
    std::vector<Message> messages() const;
    std::vector<Assertion> assertions() const;

private:
    TemporaryFolder folder_;
    mutable std::mutex mutex_;
    std::vector<Message> messages_;
    std::vector<Assertion> assertions_;
};

/// Writes `bytes` to a file, replacing it.
void writeFile(const fileString& path, const std::string& bytes);
/// The bytes of a file; fails the test when it cannot be read.
std::string readFile(const fileString& path);
/// The names in a folder, sorted.
std::vector<std::string> listFolder(const fileString& folder);

}  // namespace test
