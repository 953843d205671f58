// A hundred catalog updates in a row against a service that fails at random: answers cut short, torn
// connections, errors, stalls and wrong lengths, while the publisher keeps changing catalogs. In the end every
// catalog must be whole and current, nothing temporary may be left, and memory and open files must not have
// grown. The failures depend on the seed alone.
//
//     velk_update_soak [ROUNDS [SEED]]
#include "host/catalog/CatalogFile.h"
#include "host/command/UpdateReceiver.h"
#include "host/support/FileError.h"
#include "host/support/InstallHost.h"
#include "support/EventLoop.h"
#include "support/Numbers.h"
#include "support/ScriptedServer.h"
#include "support/TestHost.h"
#include "support/ZipBuilder.h"

#include <VelkCommon/Files/SHA1.h>
#include <VelkLibrary/LibraryCatalogUpdater.h>
#include <VelkLibrary/Update/detail/CatalogUpdateState.h>

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <unistd.h>

#ifdef __SANITIZE_ADDRESS__
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();  // g++ has no header for it
#else
#include <malloc.h>
#endif

namespace {

namespace fs = std::filesystem;

using test::Reply;

constexpr int coreCatalogs = 20;
constexpr int bonusCatalogs = 6;
constexpr unsigned failuresPerHundred = 12;
// For what differs from one moment to the next, connections above all.
constexpr std::size_t filesTolerance = 20;
constexpr long heapTolerance = 256;  // KB

std::string sha1(const fileString& path)
{
    return SHA1::fileContentsToSHA1Hex(path);
}

/// A catalog of some hundred items that differs by its revision.
std::string catalogBytes(const test::TemporaryFolder& folder, const std::string& name, int revision)
{
    VelkHost::Catalog catalog;
    catalog.id = name;
    catalog.name = name + " " + std::to_string(revision);
    catalog.folders.push_back({VelkHost::Folder::noParent, "All"});
    std::mt19937 random(static_cast<unsigned>(revision));
    for (int i = 0; i < 200; ++i) {
        VelkHost::Item item;
        item.uniqueId = name + "#" + std::to_string(i);
        item.name = "Item " + std::to_string(random());
        item.keywords = "keyword " + std::to_string(random());
        catalog.items.push_back(item);
    }
    const fileString path = folder / U"catalog.calib";
    VelkHost::writeCatalog(catalog, path);
    return test::readFile(path);
}

struct Published
{
    std::string library;   ///< as it is asked for
    fileString installed;  ///< where the catalog belongs
    std::string catalog;   ///< the database's bytes
    std::string body;      ///< what travels
    std::string tag;
    int revision = 0;
};

/// The service: what it has, and how it fails.
class Service
{
public:
    explicit Service(unsigned seed) : seed_(seed)
    {
        server_.on("/api", [this](const test::SeenRequest& request) { return reply(request); });
    }

    std::string address() const { return server_.url("/api?key=k"); }

    void publish(const Published& published)
    {
        const std::lock_guard lock(mutex_);
        published_[published.library] = published;
    }

    std::map<std::string, Published> published() const
    {
        const std::lock_guard lock(mutex_);
        return published_;
    }

    void beginRound(int round, bool failing)
    {
        server_.forgetRequests();
        const std::lock_guard lock(mutex_);
        round_ = round;
        failing_ = failing;
    }

    std::map<std::string, int> failures() const
    {
        const std::lock_guard lock(mutex_);
        return failures_;
    }

private:
    Reply reply(const test::SeenRequest& request)
    {
        const std::string library = request.parameter("library");
        const std::lock_guard lock(mutex_);
        if (library.empty())
            return {};
        Reply reply = soundReply(library);
        if (failing_)
            spoil(reply, request.method, library);
        return reply;
    }

    Reply soundReply(const std::string& library) const
    {
        if (library == "Standard_Core_Content_Index.txt") {
            std::string index;
            for (const auto& [name, published] : published_)
                if (name.ends_with(".calib"))
                    index += name + "\r\n";
            return Reply{.body = index};
        }
        const auto found = published_.find(library);
        return found == published_.end() ? Reply{.status = 404} : Reply::file(found->second.body, found->second.tag);
    }

    // Requests overlap, so each draws its own lot.
    void spoil(Reply& reply, const std::string& method, const std::string& library)
    {
        const std::size_t lot = std::hash<std::string>()(library + method + std::to_string(round_));
        std::mt19937 random(seed_ ^ static_cast<unsigned>(lot));
        if (random() % 100 >= failuresPerHundred)
            return;
        const bool download = method == "GET";
        const auto part = [&] { return random() % std::max<std::size_t>(reply.body.size(), 1); };
        switch (random() % (download ? 8 : 4)) {
            case 0:
                note("error 500");
                reply = Reply{.status = 500, .body = "out of order"};
                break;
            case 1:
                note("torn at once");
                reply = Reply::resetAtOnce();
                break;
            case 2:
                note("error 503 without a body");
                reply = Reply{.status = 503, .ending = Reply::Ending::close};
                break;
            case 3:
                note("rubbish");
                reply = Reply{.raw = "\x16\x03rubbish\r\n\r\n", .ending = Reply::Ending::close};
                break;
            case 4:
                note("cut short");
                reply.cutAfter = part();
                reply.ending = Reply::Ending::close;
                break;
            case 5:
                note("torn");
                reply.cutAfter = part();
                reply.ending = Reply::Ending::reset;
                break;
            case 6:
                note("stalled");
                reply.cutAfter = 0;
                reply.ending = Reply::Ending::hang;
                break;
            default:
                note("wrong length");
                spoilLength(reply, library, static_cast<unsigned>(random()));
                break;
        }
    }

    // A packed library that arrives too short has nothing in it, which counts as installed; so only what
    // the host can tell from a catalog is made shorter.
    static void spoilLength(Reply& reply, const std::string& library, unsigned lot)
    {
        const bool shorter = library.ends_with(".calib") && lot % 2 == 0;
        reply.length = std::to_string(shorter ? reply.body.size() / 2 : reply.body.size() + 1 + lot % 1000);
        reply.ending = Reply::Ending::close;
    }

    void note(const char* failure) { ++failures_[failure]; }

    const unsigned seed_;
    mutable std::mutex mutex_;
    std::map<std::string, Published> published_;
    std::map<std::string, int> failures_;
    int round_ = 0;
    bool failing_ = true;
    test::ScriptedServer server_;
};

/// The publisher, the installation, and one update after the other.
class Soak
{
public:
    explicit Soak(unsigned seed) : random_(seed), service_(seed)
    {
        install();
        for (int i = 0; i < coreCatalogs; ++i)
            addCatalog("core " + std::to_string(i) + ".calib", U"core", {});
        for (int i = 0; i < bonusCatalogs; ++i)
            addCatalog("bonus " + std::to_string(i) + ".calibz", U"bonus", "bonus " + std::to_string(i) + ".calib");
    }

    /// Changes some catalogs and updates. The outcome of the run.
    int round(int number, bool failing)
    {
        for (auto& [library, published] : service_.published())
            if (failing && random_() % 5 == 0)
                revise(published);
        service_.beginRound(number, failing);
        return update();
    }

    /// What is wrong with the installation, one line each.
    std::set<std::string> faults() const
    {
        std::set<std::string> faults;
        for (const auto& [library, published] : service_.published()) {
            if (!published.installed.pathExists() || test::readFile(published.installed) != published.catalog)
                faults.insert(library + " is not current");
            if (library.ends_with(".calibz") && !referencedFiles(published).pathExists())
                faults.insert("the files of " + library + " are missing");
        }
        for (const auto& entry : fs::recursive_directory_iterator(folder_.path().utf8()))
            if (entry.is_regular_file() && !isExpected(entry.path().string()))
                faults.insert("left over: " + entry.path().string());
        return faults;
    }

    /// Every installed catalog can be read, whatever its revision.
    bool allWhole() const
    {
        try {
            for (const auto& [library, published] : service_.published())
                if (published.installed.pathExists())
                    VelkHost::readCatalog(published.installed, VelkHost::CatalogContent::Names);
            return true;
        } catch (const VelkHost::FileError& error) {
            std::printf("broken: %s\n", error.what());
            return false;
        }
    }

    const Service& service() const { return service_; }
    std::size_t replaced() const { return replaced_; }
    std::size_t kept() const { return kept_; }

private:
    // A stall would take minutes: the count of calls without a byte begins near its end.
    void install()
    {
        Velk::HostServices services = VelkHost::hostServices(folder_.path() / U"home");
        services.resourceString = [](unsigned int id) -> std::optional<std::u32string> {
            if (id == test::textNumber::downloading)
                LibraryCatalogUpdate::detail::CatalogUpdateState::get().counters.stalledCalls = 590;
            return std::nullopt;
        };
        Velk::installHost(std::move(services));
        for (const char32_t* const name : {U"core", U"bonus", U"user"})
            fs::create_directories((folder_.path() / U"home" / name).utf8());
    }

    void addCatalog(const std::string& library, const std::u32string& kind, const std::string& catalogName)
    {
        Published published;
        published.library = library;
        const fileString name = catalogName.empty() ? fileString(library) : fileString(catalogName);
        published.installed = folder_.path() / U"home" / kind / name;
        (kind == U"core" ? core_ : bonus_).insert(published.installed);
        revise(published);
    }

    void revise(Published published)
    {
        ++published.revision;
        published.catalog = catalogBytes(work_, published.library, published.revision);
        const fileString path = work_ / U"hashed";
        test::writeFile(path, published.catalog);
        published.tag = sha1(path);
        published.body = published.catalog;
        if (published.library.ends_with(".calibz"))
            published.body = test::ZipBuilder()
                                 .add("library.calib", published.catalog)
                                 .add("textures/oak.png", std::string(5'000, 'x'))
                                 .bytes();
        service_.publish(published);
    }

    int update()
    {
        VelkHost::Output output;
        VelkHost::UpdateReceiver receiver(output, [] {});
        LibraryCatalogUpdate::LibraryCatalogUpdater updater(receiver, core_, bonus_, {}, "soak", "1",
                                                            service_.address(), false);
        test::runBesideEventLoop([&updater] { updater(); });
        replaced_ += receiver.installer().installed().size();
        kept_ += receiver.installer().failures().size();
        return receiver.report() ? receiver.report()->outcome : -1;
    }

    fileString referencedFiles(const Published& published) const
    {
        return folder_.path() / U"home" / U"referenced" /
               (published.installed.stem() + fileString(std::string(".zip")));
    }

    bool isExpected(const std::string& path) const
    {
        if (path.ends_with("/catalog_hash.txt") || path.ends_with("/user/errors.log"))
            return true;
        for (const auto& [library, published] : service_.published())
            if (path == published.installed.utf8() || path == referencedFiles(published).utf8())
                return true;
        return false;
    }

    std::mt19937 random_;
    test::TemporaryFolder folder_;
    test::TemporaryFolder work_;
    std::set<fileString> core_;
    std::set<fileString> bonus_;
    Service service_;
    std::size_t replaced_ = 0;
    std::size_t kept_ = 0;
};

std::size_t openFiles()
{
    const fs::directory_iterator files("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

/// What the program has of memory that it did not give back; and whether what it takes of the machine's memory
/// tells something beside that.
#ifdef __SANITIZE_ADDRESS__
std::size_t heapBytes()
{
    return __sanitizer_get_current_allocated_bytes();
}
constexpr bool residentTells = false;  // what is freed stays for a while, up to 256 MB of it
#else
std::size_t heapBytes()
{
    const struct mallinfo2 heap = ::mallinfo2();
    return heap.uordblks + heap.hblkhd;
}
constexpr bool residentTells = true;
#endif

long residentKilobytes()
{
    long pages = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    return resident * (::sysconf(_SC_PAGESIZE) / 1024);
}

/// What the program holds at a moment between two updates.
struct Holdings
{
    std::size_t files = openFiles();
    long heap = static_cast<long>(heapBytes() / 1024);
    long resident = residentKilobytes();
};

bool hasGrown(const Holdings& before, const Holdings& after)
{
    return after.files > before.files + filesTolerance || after.heap > before.heap + heapTolerance ||
           (residentTells && after.resident > before.resident + before.resident / 10);
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    const int rounds = argumentCount > 1 ? std::atoi(arguments[1]) : 100;
    const unsigned seed = argumentCount > 2 ? static_cast<unsigned>(std::atoi(arguments[2])) : 1;
    const QCoreApplication application(argumentCount, arguments);
    const auto start = std::chrono::steady_clock::now();
    Soak soak(seed);
    bool whole = true;
    std::map<int, int> outcomes;
    std::optional<Holdings> before;
    for (int round = 0; round < rounds; ++round) {
        ++outcomes[soak.round(round, true)];
        whole = soak.allWhole() && whole;
        if (round == rounds / 5)
            before.emplace();
    }
    const Holdings after;
    // Two runs without failures: one brings what is missing, one finds nothing to do and tidies up.
    soak.round(rounds, false);
    const int last = soak.round(rounds + 1, false);
    const std::set<std::string> faults = soak.faults();
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;

    std::printf("%d updates in %.0f s, seed %u\n", rounds, passed.count(), seed);
    for (const auto& [outcome, count] : outcomes)
        std::printf("  outcome %d: %d\n", outcome, count);
    for (const auto& [failure, count] : soak.service().failures())
        std::printf("  failure \"%s\": %d\n", failure.c_str(), count);
    std::printf("  catalogs replaced: %zu, refused by the host: %zu\n", soak.replaced(), soak.kept());
    std::printf("  after %d updates: %zu open files, heap %ld KB, resident %ld KB\n", rounds / 5, before->files,
                before->heap, before->resident);
    std::printf("  after all: %zu open files, heap %ld KB, resident %ld KB\n", after.files, after.heap, after.resident);
    std::printf("  all catalogs whole after each update: %s\n", whole ? "yes" : "NO");
    for (const std::string& fault : faults)
        std::printf("  fault: %s\n", fault.c_str());
    const bool grown = hasGrown(*before, after);
    if (grown)
        std::printf("  memory or open files have GROWN\n");
    const bool passedAll = whole && faults.empty() && !grown && last == LibraryCatalogUpdate::UpToDate;
    std::printf("%s\n", passedAll ? "passed" : "FAILED");
    return passedAll ? EXIT_SUCCESS : EXIT_FAILURE;
}
