// How long the update of an installation takes over lines with a long round trip, and without a service.
// One table shows the results with what is demanded (gate) and what is aimed at (target). The peers are the curl
// command with eight requests at a time, and with one connection. Everything goes over TLS, and through a relay that
// delays it.
#include "DelayingRelay.h"
#include "Measures.h"
#include "UpdateReceiver.h"
#include "support/ScriptedServer.h"
#include "support/Threads.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/SHA1.h>
#include <VelkCommon/HostServices.h>
#include <VelkCommon/Network/Curl.h>
#include <VelkLibrary/LibraryCatalogUpdater.h>
#include <VelkLibrary/Update/CatalogHashFile.h>
#include <VelkLibrary/UpdateData.h>

#include <QCoreApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <limits>
#include <map>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

constexpr int catalogCount = 200;
constexpr int changedCount = 20;
constexpr std::size_t changedSize = 10500000;             // bytes
constexpr std::uint64_t lineRate = 200 * 1000000ULL / 8;  // bytes a second
constexpr int repetitions = 3;

double secondsOf(const std::function<void()>& work)
{
    const auto begin = Clock::now();
    work();
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

/// The least time of each; they take turns, because the machine's speed drifts.
std::vector<double> leastSecondsOf(const std::vector<std::function<void()>>& works)
{
    std::vector<double> least(works.size(), std::numeric_limits<double>::max());
    for (int i = 0; i < repetitions; ++i) {
        for (std::size_t j = 0; j < works.size(); ++j)
            least[j] = std::min(least[j], secondsOf(works[j]));
    }
    return least;
}

void writeFile(const fileString& path, const std::string& bytes)
{
    std::ofstream out(path.utf8(), std::ios::binary);
    out << bytes;
    if (!out.flush())
        throw std::runtime_error("cannot write " + path.utf8());
}

std::string catalogName(int number)
{
    return "Catalog " + std::to_string(number) + ".calib";
}

/// 200 core catalogs in a folder that is removed at the end, with a host for them.
class Installation
{
public:
    explicit Installation(const std::string& authority)
    {
        services_.folders.userDatabase = folder("user");
        services_.folders.coreLibraryDatabase = folder("core");
        services_.folders.bonusLibraryDatabase = folder("bonus");
        services_.folders.manufacturerLibrary = folder("manufacturer");
        services_.folders.proprietaryLibraryReferencedFiles = folder("referenced");
        services_.folders.temp = folder("temp");
        services_.certificateFile = root() / fileString(std::string("authority.pem"));
        writeFile(services_.certificateFile, authority);
        Velk::installHost(services_);
        for (int i = 0; i < catalogCount; ++i) {
            const fileString path = services_.folders.coreLibraryDatabase / fileString(catalogName(i));
            writeFile(path, catalogName(i));
            catalogs_.insert(path);
        }
    }
    ~Installation() { Velk::installHost({}); }
    Installation(const Installation&) = delete;
    Installation& operator=(const Installation&) = delete;

    fileString root() const { return fileString(root_.path().toStdString()); }
    const fileString& certificates() const { return services_.certificateFile; }
    const std::set<fileString>& catalogs() const { return catalogs_; }

    /// Updates all catalogs, after forgetting what earlier updates learned. Throws if it does not end as it should.
    void update(const std::string& service, std::int32_t outcome, int installed = 0) const
    {
        FileUtils::removePath(LibraryCatalogUpdate::catalogHashFile(LibraryCatalogUpdate::CoreCatalogs),
                              FileUtils::noFlags);
        bench::UpdateReceiver receiver;
        LibraryCatalogUpdate::LibraryCatalogUpdater updater(receiver, catalogs_, {}, {}, "planner", "12", service,
                                                            false);
        test::Thread([&updater] { updater(); }).join();
        QCoreApplication::processEvents();
        if (receiver.outcome != outcome || receiver.installed != installed)
            throw std::runtime_error("the update did not end as it should");
    }

private:
    fileString folder(const char* name) const
    {
        const fileString path = root() / fileString(std::string(name));
        FileUtils::createDirectoriesWithPerm(path);
        return path + fileString(std::string("/"));
    }

    QTemporaryDir root_;
    Velk::HostServices services_;
    std::set<fileString> catalogs_;
};

/// The service. It knows every catalog, and has other versions of the first `changed` ones.
class Service
{
public:
    explicit Service(const Installation& installation, const test::Certificate& certificate) : server_(certificate)
    {
        for (const fileString& path : installation.catalogs())
            tags_[path.stemWithExtension().utf8()] = SHA1::fileContentsToSHA1Hex(path);
        server_.on("/start", test::Reply::redirect("/api?service=catalogs"));
        server_.on("/api", [this](const test::SeenRequest& request) { return answer(request); });
    }

    void change(int count)
    {
        changed_.clear();
        for (int i = 0; i < count; ++i)
            changed_.insert(catalogName(i));
    }
    const test::ScriptedServer& server() const { return server_; }

private:
    test::Reply answer(const test::SeenRequest& request) const
    {
        const std::string library = request.parameter("library");
        if (changed_.count(library) != 0)
            return test::Reply::file(body_, "changed");
        const auto found = tags_.find(library);
        return test::Reply::file("", found == tags_.end() ? "index" : found->second);
    }

    std::map<std::string, std::string> tags_;
    std::set<std::string> changed_;
    std::string body_ = std::string(changedSize, 'x');
    test::ScriptedServer server_;
};

/// The curl command with a list of addresses.
class CurlCommand
{
public:
    CurlCommand(const Installation& installation, std::string options)
        : list_(installation.root() / fileString(std::string("list"))),
          options_(std::move(options) + " --fail --stderr /dev/null --cacert '" + installation.certificates().utf8() +
                   "' --config '" + list_.utf8() + "'"),
          output_((installation.root() / fileString(std::string("output"))).utf8())
    {}

    void fetch(const std::string& endpoint, int count, bool keep) const
    {
        std::string text;
        for (int i = 0; i < count; ++i) {
            text += "url = \"" + endpoint + "&library=Catalog%20" + std::to_string(i) + ".calib\"\n";
            text += "output = \"" + (keep ? output_ + std::to_string(i) : "/dev/null") + "\"\n";
        }
        writeFile(list_, text);
        if (std::system(("curl " + options_).c_str()) != 0)
            throw std::runtime_error("curl failed");
    }

private:
    fileString list_;
    std::string options_;
    std::string output_;
};

std::string addressOf(const bench::DelayingRelay& relay)
{
    return "https://127.0.0.1:" + std::to_string(relay.port());
}

/// All measures.
class Measures
{
public:
    bool print()
    {
        throughput();
        checks(milliseconds(10));
        checks(milliseconds(50));
        downloads();
        unreachable();
        std::printf("\n");
        return bench::printMeasures(measures_);
    }

private:
    void throughput();
    void checks(milliseconds oneWay);
    void downloads();
    void unreachable();
    void add(const std::string& what, double value, double gate, double target, const char* unit)
    {
        measures_.push_back({what, value, gate, target, false, unit});
    }

    test::TestAuthority authority_;
    Installation installation_{authority_.certificate()};
    Service service_{installation_, authority_.issue()};
    std::vector<bench::Measure> measures_;
};

int lockAndGoOn(void* data, double, double, double, double)
{
    const std::lock_guard lock(*static_cast<std::mutex*>(data));
    return 0;
}

// What the calls of the progress callback cost, with many bytes as fast as this machine can move them.
void Measures::throughput()
{
    test::ScriptedServer server;
    server.on("/file", test::Reply{.body = std::string(20 * changedSize, 'x')});
    const fileString target = installation_.root() / fileString(std::string("file"));
    std::mutex mutex;
    const auto fetch = [&](Curl::Progress progress) {
        std::string reason;
        unsigned int code = 0;
        if (!Curl::get().download_to_location(server.url("/file"), target, {}, &mutex, progress, reason, code))
            throw std::runtime_error(reason);
    };
    const std::vector<double> times = leastSecondsOf({[&] { fetch(nullptr); }, [&] { fetch(&lockAndGoOn); }});
    std::printf("210 MB on this machine: %.2f s, with a progress callback %.2f s\n", times[0], times[1]);
}

// The whole run with its redirect and its index, against curl's checks alone.
void Measures::checks(milliseconds oneWay)
{
    const bench::DelayingRelay relay(service_.server().port(), oneWay, 0);
    const std::string address = addressOf(relay);
    service_.change(0);
    const CurlCommand parallel(installation_, "--head -Z --parallel-max 8");
    std::size_t connections = 0;
    const auto update = [&] {
        const std::size_t before = service_.server().connections();
        installation_.update(address + "/start", LibraryCatalogUpdate::UpToDate);
        connections += service_.server().connections() - before;
    };
    const auto curl = [&] { parallel.fetch(address + "/api?service=catalogs", catalogCount, false); };
    const std::vector<double> times = leastSecondsOf({update, curl});
    const CurlCommand serial(installation_, "--head");
    const double one = secondsOf([&] { serial.fetch(address + "/api?service=catalogs", catalogCount, false); });
    const std::string line = std::to_string(2 * oneWay.count()) + " ms";
    std::printf("%d checks at %s round trip: own %.2f s, curl with eight at a time %.2f s, with one %.2f s\n",
                catalogCount, line.c_str(), times[0], times[1], one);
    add("check of 200 at " + line + ": part of curl -Z's time", times[0] / times[1], 1.5, 1.1, "x");
    add("connections of " + std::to_string(repetitions) + " checks at " + line, static_cast<double>(connections), 8, 8,
        "");
}

// The time that the downloads add to a run, against curl with one connection that it keeps.
void Measures::downloads()
{
    const bench::DelayingRelay relay(service_.server().port(), milliseconds(50), lineRate);
    const std::string address = addressOf(relay);
    service_.change(0);
    const std::size_t before = service_.server().connections();
    const double check =
        leastSecondsOf({[&] { installation_.update(address + "/start", LibraryCatalogUpdate::UpToDate); }}).front();
    service_.change(changedCount);
    const double own =
        secondsOf([&] { installation_.update(address + "/start", LibraryCatalogUpdate::Installed, changedCount); }) -
        check;
    const auto connections = static_cast<double>(service_.server().connections() - before);
    const CurlCommand command(installation_, "");
    const double peer = secondsOf([&] { command.fetch(address + "/api?service=catalogs", changedCount, true); });
    std::printf("%d downloads of 10.5 MB at 100 ms and 200 Mbit/s: own %.2f s, curl %.2f s\n", changedCount, own, peer);
    add("downloads of 20: part of one curl's time", own / peer, 1.15, 1.05, "x");
    add("connections of all runs with downloads", connections, 8, 8, "");
    service_.change(0);
}

void Measures::unreachable()
{
    const test::RefusingPort refusing;
    add("unreachable, refused",
        secondsOf([&] { installation_.update(refusing.url(), LibraryCatalogUpdate::ErrorsAutomatic); }), 2, 1, "s");
    const std::string nowhere = "http://content.invalid/";
    add("unreachable, name not found",
        secondsOf([&] { installation_.update(nowhere, LibraryCatalogUpdate::ErrorsAutomatic); }), 2, 1, "s");
    const test::DeafPort deaf;
    add("unreachable, packets dropped",
        secondsOf([&] { installation_.update(deaf.url(), LibraryCatalogUpdate::ErrorsAutomatic); }), 20, 15, "s");
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    const QCoreApplication application(argumentCount, arguments);
    try {
        return Measures().print() ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 2;
    }
}
