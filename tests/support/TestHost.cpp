#include "support/TestHost.h"

#include "support/Waiting.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

namespace fs = std::filesystem;

namespace test {
namespace {

fs::path native(const fileString& path)
{
    return fs::path(std::u8string(path.utf8().begin(), path.utf8().end()));
}

std::string utf8(const fs::path& path)
{
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

const bool giveUpTellsTheTest = [] {
    runningTest = [] {
        const testing::TestInfo* const test = testing::UnitTest::GetInstance()->current_test_info();
        return test == nullptr ? std::string("no test") : std::string(test->test_suite_name()) + "." + test->name();
    };
    return true;
}();

// Open to this user only, so that a test notices what another user cannot reach.
fileString freshFolder()
{
    std::random_device random;
    for (;;) {
        const std::string name = "velk-test-" + std::to_string(random()) + "-" + std::to_string(random());
        const fs::path path = fs::temp_directory_path() / name;
        if (!fs::create_directory(path))
            continue;
        fs::permissions(path, fs::perms::owner_all);
        return utf8(path);
    }
}

}  // namespace

TemporaryFolder::TemporaryFolder() : path_(freshFolder()) {}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    fs::remove_all(native(path_), ignored);
}

TestHost::TestHost()
{
    Velk::installHost(services());
}

TestHost::~TestHost()
{
    Velk::installHost({});
}

Velk::HostServices TestHost::services()
{
    Velk::HostServices services;
    const auto make = [this](const char32_t* name) {
        const fileString path = folder_ / name;
        fs::create_directories(native(path));
        return path;
    };
    services.folders.userDatabase = make(U"user");
    services.folders.coreLibraryDatabase = make(U"core");
    services.folders.bonusLibraryDatabase = make(U"bonus");
    services.folders.manufacturerLibrary = make(U"manufacturer");
    services.folders.manufacturerData = make(U"manufacturer-data");
    services.folders.proprietaryLibraryReferencedFiles = make(U"referenced");
    services.folders.userTexture = make(U"textures");
    services.folders.temp = make(U"temp");
    services.showMessage = [this](const error::Message& message) {
        const std::lock_guard lock(mutex_);
        messages_.push_back(message);
        return error::Button::Ok;
    };
    services.reportAssertion = [this](const Velk::AssertionReport& report) {
        const std::lock_guard lock(mutex_);
        assertions_.push_back({report.sourceFile, report.line, report.kind, report.expression});
        return false;
    };
    return services;
}

std::vector<Message> TestHost::messages() const
{
    const std::lock_guard lock(mutex_);
    return messages_;
}

std::vector<Assertion> TestHost::assertions() const
{
    const std::lock_guard lock(mutex_);
    return assertions_;
}

void writeFile(const fileString& path, const std::string& bytes)
{
    std::ofstream out(native(path), std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out)
        ADD_FAILURE() << "cannot write " << path;
}

std::string readFile(const fileString& path)
{
    std::ifstream in(native(path), std::ios::binary);
    if (!in)
        ADD_FAILURE() << "cannot read " << path;
    return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<std::string> listFolder(const fileString& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(native(folder)))
        names.push_back(utf8(entry.path().filename()));
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace test
