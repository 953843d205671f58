// What transfers do when an allocation fails. A program by itself, as its `operator new` can be told to fail.
#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Network/WebUtils.h>
#include <VelkCommon/Platform/FileSystem.h>

#include "NetworkTest.h"
#include "support/CountedMemory.h"

#include <curl/curl.h>

#include <cstdlib>
#include <cstring>
#include <functional>

namespace {

using std::chrono::seconds;
using test::Reply;
using testing::IsEmpty;

// What libcurl allocates with, refused like everything else of this thread.
void* allocate(std::size_t size)
{
    return test::isRefused() ? (++test::refusedAllocations, nullptr) : std::malloc(size);
}

void* reallocate(void* memory, std::size_t size)
{
    return test::isRefused() ? (++test::refusedAllocations, nullptr) : std::realloc(memory, size);
}

void* allocateZeroed(std::size_t count, std::size_t size)
{
    return test::isRefused() ? (++test::refusedAllocations, nullptr) : std::calloc(count, size);
}

char* duplicate(const char* text)
{
    const std::size_t size = std::strlen(text) + 1;
    void* const copy = allocate(size);
    return copy == nullptr ? nullptr : static_cast<char*>(std::memcpy(copy, text, size));
}

/// Whether an operation without memory failed, or did what it should all the same.
enum class End { failed, succeeded };

class CurlMemory : public test::NetworkTest
{
protected:
    using Operation = std::function<End()>;
    static constexpr seconds timeOut{20};
    // What the standard library takes for itself cannot be refused on Windows, so less is met there.
    static constexpr std::size_t fewest = Velk::Platform::linesEndWithCarriageReturn ? 5 : 20;

    static void SetUpTestSuite()
    {
        // The first call decides, so this one comes before any transfer.
        ASSERT_EQ(
            curl_global_init_mem(CURL_GLOBAL_DEFAULT, &allocate, &std::free, &reallocate, &duplicate, &allocateZeroed),
            CURLE_OK);
    }
    static void TearDownTestSuite() { curl_global_cleanup(); }

    CurlMemory()
    {
        limit([](auto& limits) { limits.connect = limits.silence = limits.total = limits.header = timeOut; });
        server_.on("/a", Reply{.headers = {{"ETag", "\"a tag that is longer than a short string\""}}, .body = body()});
        server_.on("/moved", Reply::redirect("/a?with=a+query+that+no+short+string+holds"));
        server_.on("/broken", Reply::resetAtOnce());
    }
    ~CurlMemory() override { letAllocate(); }

    static std::string body() { return std::string(300'000, 'x'); }

    static void letAllocate()
    {
        test::failingAllocation = SIZE_MAX;
        test::failingForGood = false;
    }

    // Each allocation fails in turn, alone and with all that follow it, until none is left.
    void failEachAllocation(const Operation& operation)
    {
        for (const bool forGood : {false, true}) {
            constexpr std::size_t beyondAll = 100'000;
            std::size_t allocation = 0;
            while (allocation < beyondAll && !failsAt(allocation, forGood, operation))
                ++allocation;
            EXPECT_GT(allocation, fewest) << "the allocations were met one by one";
            EXPECT_LT(allocation, beyondAll);
        }
    }

private:
    // True when nothing was refused. What went wrong must be over then: nothing waits for a time-out, nothing is left
    // on the disk, and the next call finds all in order.
    bool failsAt(std::size_t allocation, bool forGood, const Operation& operation)
    {
        const auto begun = std::chrono::steady_clock::now();
        test::refusedAllocations = 0;
        test::failingForGood = forGood;
        test::failingAllocation = allocation;
        const End end = operation();
        letAllocate();
        const bool refused = test::refusedAllocations > 0;
        EXPECT_TRUE(refused || end == End::succeeded) << allocation;
        EXPECT_LT(std::chrono::steady_clock::now() - begun, timeOut) << allocation;
        if (end == End::succeeded)
            FileUtils::removePath(target(), FileUtils::noFlags);
        EXPECT_THAT(strayFiles(), IsEmpty()) << allocation;
        EXPECT_THAT(test::listFolder(folder() / U"temp"), IsEmpty()) << allocation;
        EXPECT_TRUE(askHeader(server_.url("/a"))) << allocation;
        return !refused;
    }
};

TEST_F(CurlMemory, AText)
{
    const std::string url = server_.url("/a");
    const std::string whole = body();
    std::string text;
    failEachAllocation([&] {
        const bool succeeded = Curl::get().browseURL(url, {}, text, true, 0);
        if (!succeeded)
            return End::failed;
        return text == whole ? End::succeeded : (ADD_FAILURE(), End::failed);
    });
}

TEST_F(CurlMemory, ADownload)
{
    const std::string url = server_.url("/a");
    const fileString path = target();
    const std::vector<std::string> headers = {"X-First: a header line that is longer than a short string", "X: y"};
    failEachAllocation([&] {
        std::string reason;
        unsigned int code = 0;
        const auto goOn = [](void*, double, double, double, double) { return 0; };
        const bool succeeded = Curl::get().download_to_location(url, path, headers, nullptr, goOn, reason, code);
        EXPECT_EQ(succeeded, code == 0);
        return succeeded ? End::succeeded : End::failed;
    });
}

TEST_F(CurlMemory, ATemporaryFile)
{
    const std::string url = server_.url("/a");
    failEachAllocation([&] {
        const fileString file = Curl::get().download(url);
        if (file.empty())
            return End::failed;
        letAllocate();
        EXPECT_TRUE(FileUtils::removePath(file, FileUtils::noFlags));
        return End::succeeded;
    });
}

TEST_F(CurlMemory, ARedirect)
{
    const std::string url = server_.url("/moved");
    const std::vector<std::string> headers = {"Cookie: a=b"};
    std::string header;
    long status = 0;
    failEachAllocation([&] {
        const bool succeeded = Curl::get().getURLHeader(url, headers, header, status);
        EXPECT_EQ(succeeded ? 200 : 0, status);
        return succeeded ? End::succeeded : End::failed;
    });
}

TEST_F(CurlMemory, AnAddressAfterRedirects)
{
    const std::string url = server_.url("/moved");
    const std::string last = server_.url("/a?with=a+query+that+no+short+string+holds");
    failEachAllocation([&] {
        try {
            const std::string found = WebUtils::getUrlAfterRedirects(url);
            return found == last ? End::succeeded : End::failed;
        } catch (const std::bad_alloc&) {
            return End::failed;
        }
    });
}

TEST_F(CurlMemory, ServersThatAreAway)
{
    const test::RefusingPort refusing;
    const std::string url = refusing.url();
    const std::string broken = server_.url("/broken");
    std::string text;
    failEachAllocation([&] {
        try {
            const Curl::Run run;
            EXPECT_FALSE(Curl::get().browseURL(url, {}, text, true, 0));
            EXPECT_FALSE(Curl::get().browseURL(url, {}, text, true, 0));
            EXPECT_FALSE(Curl::get().browseURL(broken, {}, text, true, 0));
        } catch (const std::bad_alloc&) {
            return End::failed;
        }
        return End::succeeded;
    });
}

TEST_F(CurlMemory, OverlappingRequests)
{
    const std::vector<Curl::HeaderRequest> requests(3, {server_.url("/moved"), {"X: y"}});
    const std::string url = server_.url("/a");
    failEachAllocation([&] {
        std::size_t received = 0;
        std::string text;
        try {
            Curl::get().getURLHeaders(requests, [&](std::size_t index, const Curl::HeaderAnswer& answer) {
                received += answer.received ? 1U : 0U;
                if (index == 1)
                    received += Curl::get().browseURL(url, {}, text, true, 0) ? 1U : 0U;
            });
        } catch (const std::bad_alloc&) {
            return End::failed;
        }
        return received == requests.size() + 1 ? End::succeeded : End::failed;
    });
}

}  // namespace
