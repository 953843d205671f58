// How fast the data files are read and written, and Base64 is encoded and decoded, beside other libraries. One table
// shows the results with what is demanded (gate) and what is aimed at (target). Arguments: folders to look for
// furniture libraries in, whose manufacturers get the cards.
#include "JsonPeers.h"
#include "LibraryNames.h"
#include "Measures.h"
#include "support/SmallStack.h"

#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/HostServices.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/TimeText.h>
#include <VelkLibrary/Base64.h>
#include <VelkLibrary/JsonReader.h>
#include <VelkLibrary/LibraryFilterManager.h>
#include <VelkLibrary/Manufacturer/ManufacturerManager.h>

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <openssl/evp.h>

#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <functional>
#include <iterator>
#include <limits>
#include <map>
#include <random>
#include <set>

namespace fs = std::filesystem;

namespace {

using bench::Measure;

constexpr long cardCount = 20'000;
constexpr long filterCount = 10'000;
constexpr int rounds = 25;
constexpr double noLimit = std::numeric_limits<double>::infinity();

// ---- Time ----------------------------------------------------------------------------------------

// Processor time of this process: the machine may have other things to do.
double milliseconds()
{
    struct timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// The least times of pieces of work that take turns, by their names. Each begins with a trimmed heap, as a program has
// when it reads its data files at its start. Otherwise what one leaves in the allocator would count for the next.
class Turns
{
public:
    void add(const std::string& name, std::function<void()> work) { works_[name] = std::move(work); }

    void run()
    {
        for (int round = 0; round < rounds; ++round)
            for (const auto& [name, work] : works_) {
                malloc_trim(0);
                const double begin = milliseconds();
                work();
                const double time = milliseconds() - begin;
                double& least = least_.try_emplace(name, noLimit).first->second;
                least = std::min(least, time);
            }
    }

    double of(const std::string& name) const { return least_.at(name); }
    const std::map<std::string, double>& all() const { return least_; }

private:
    std::map<std::string, std::function<void()>> works_;
    std::map<std::string, double> least_;
};

// ---- Data ----------------------------------------------------------------------------------------

// Makes the folders below this one the host's.
void installFolders(const fs::path& root)
{
    Velk::HostServices host;
    host.folders.manufacturerData = fileString((root / "manufacturers").string());
    host.folders.coreLibraryDatabase = fileString((root / "core").string());
    Velk::installHost(std::move(host));
}

// A host's folders, which last as long as the measuring.
class Folders
{
public:
    Folders() : path_(fs::temp_directory_path() / ("velk-bench-" + std::to_string(std::random_device{}())))
    {
        for (const char* const name : {"manufacturers", "core"})
            fs::create_directories(path_ / name);
        installFolders(path_);
    }
    ~Folders() { fs::remove_all(path_); }
    Folders(const Folders&) = delete;
    Folders& operator=(const Folders&) = delete;

    const fs::path& path() const { return path_; }
    fileString operator/(const char* name) const { return fileString((path_ / name).string()); }

private:
    fs::path path_;
};

// The furniture's manufacturers, or made-up names where there are no libraries.
std::vector<std::string> manufacturers(const std::vector<std::string>& folders)
{
    std::set<std::string> names;
    for (const bench::Entry& entry : bench::readLibraries(folders))
        if (!entry.creator.empty())
            names.insert(entry.creator);
    if (names.empty()) {
        std::fprintf(stderr, "There are no furniture libraries, so the names on the cards are made up.\n");
        names = {"Acme Doors",
                 "K\xC3\xBC"
                 "chen Meyer",
                 "Belt & Sons"};
    }
    return {names.begin(), names.end()};
}

std::map<long, Manufacturer> makeCards(const std::vector<std::string>& manufacturers)
{
    std::map<long, Manufacturer> cards;
    const auto begin = Library::fromString<boost::posix_time::ptime>("20240101T080000.5");
    for (long id = 0; id < cardCount; ++id) {
        const std::string number = std::to_string(id);
        const auto wide = [](const std::string& text) { return StringConvert::toUnicodeFromUtf8(text); };
        const std::string& manufacturer = manufacturers[static_cast<std::size_t>(id) % manufacturers.size()];
        cards.emplace(id, Manufacturer(wide(manufacturer + " " + number),
                                       wide("https://www.manufacturer" + number + ".example/furniture"),
                                       id % 3 == 0 ? U"default" : wide("+49 30 555 " + number), U"default",
                                       fileString("manufacturer" + number + ".png"),
                                       wide("info@manufacturer" + number + ".example"), id % 17 == 0,
                                       begin + boost::posix_time::minutes(id)));
    }
    return cards;
}

std::vector<LibraryFilter> makeFilters(const std::string& name)
{
    std::vector<LibraryFilter> filters;
    for (long id = 0; id < filterCount; ++id) {
        std::vector<std::string> ids;
        for (long i = 0; i < 5; ++i)
            ids.push_back("lib-" + name + "-" + std::to_string(id * 5 + i));
        // Every third filter has a name that is taken, so that the merge has to find a number for it.
        filters.emplace_back(id % 3 == 0 ? "Filter" : "Filter " + name + " " + std::to_string(id), id, std::move(ids));
    }
    return filters;
}

std::string readFile(const fileString& path)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.utf8().c_str(), "rb"), std::fclose);
    std::string text(static_cast<std::size_t>(fs::file_size(path.utf8())), '\0');
    text.resize(std::fread(text.data(), 1, text.size(), file.get()));
    return text;
}

// The document as one of the writer. Our data files hold only values of the kinds that are handled here.
json_writer::Object toDocument(const json::grammar<char>::object_type& members)
{
    json_writer::Object object;
    for (const auto& [key, value] : members)
        if (const auto* const text = boost::any_cast<std::string>(value.get()))
            object.add_element(key, *text);
        else if (const auto* const number = boost::any_cast<int>(value.get()))
            object.add_element(key, *number);
        else if (const auto* const flag = boost::any_cast<bool>(value.get()))
            object.add_element(key, *flag);
        else
            object.add_element(key, toDocument(boost::any_cast<const json::grammar<char>::object_type&>(*value)));
    return object;
}

// ---- Measures ------------------------------------------------------------------------------------

void measureReading(const std::string& text, std::vector<Measure>& table)
{
    Turns turns;
    for (const bench::JsonReader& reader : bench::jsonReaders())
        turns.add(reader.name, [&text, reader] { reader.read(text); });
    turns.run();
    std::printf("%ld cards, %.1f MB, read and freed:\n", cardCount, static_cast<double>(text.size()) / 1e6);
    for (const auto& [name, time] : turns.all())
        std::printf("  %-14s %7.1f ms\n", name.c_str(), time);
    const double own = turns.of("own");
    table.push_back({"read and free, against nlohmann/json", own / turns.of("nlohmann"), 1, 1, false, "x"});
    table.push_back({"read and free, against a plain Spirit grammar", own / turns.of("Spirit"), 1, 1, false, "x"});
    table.push_back(
        {"read and free, against a hand-written reader", own / turns.of("by hand"), noLimit, 1.2, false, "x"});
}

// ---- Cards ---------------------------------------------------------------------------------------
// A program reads its cards once, into the heap it starts with. How long that takes depends on where the system put
// that heap, so each turn has a process of its own: the differences between turns of one process would be those of its
// heap.

fileString cardsFile()
{
    return PathUtils::getObject().getManufacturerDataPath() + fileString(std::string("manufacturer_data.json"));
}

constexpr const char* turnOption = "--turn";

// What a process of one turn does: the work of this name, whose time it prints.
int runTurn(const std::string& work, const fs::path& root)
{
    installFolders(root);
    const std::string text = work == "document" ? readFile(cardsFile()) : std::string();
    const double begin = milliseconds();
    if (work == "document")
        json::read(text);
    else if (work == "file")
        readFile(cardsFile());
    else {
        ManufacturerManager::getManufacturerManager();
        ManufacturerManager::cleanup();
    }
    std::printf("%.6f\n", milliseconds() - begin);
    return 0;
}

double timeOfTurn(const std::string& work, const fs::path& root)
{
    const std::string command =
        "'" + fs::read_symlink("/proc/self/exe").string() + "' " + turnOption + " " + work + " '" + root.string() + "'";
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> output(popen(command.c_str(), "r"), pclose);
    double time = noLimit;
    return output && std::fscanf(output.get(), "%lf", &time) == 1 ? time : noLimit;
}

void measureCards(const fs::path& root, std::vector<Measure>& table)
{
    std::map<std::string, std::vector<double>> times;
    for (int round = 0; round < rounds; ++round)
        for (const char* const work : {"document", "file", "all"})
            times[work].push_back(timeOfTurn(work, root));
    for (auto& [work, turns] : times)
        std::sort(turns.begin(), turns.end());
    const auto cards = [&times](std::size_t turn) {
        return times["all"][turn] - times["document"][turn] - times["file"][turn];
    };
    std::printf("data file to cards: %.1f ms in all, %.1f of them for the document; in the median turn %.1f and %.1f\n",
                times["all"].front(), times["document"].front(), times["all"][rounds / 2],
                times["document"][rounds / 2]);
    table.push_back({"document to cards, against reading", cards(0) / times["document"].front(), 0.5, 0.5, false, "x"});
}

void measureWriting(const std::string& text, std::vector<Measure>& table)
{
    const auto root = json::read(text);
    const auto document = toDocument(boost::any_cast<const json::grammar<char>::object_type&>(*root));
    Turns turns;
    turns.add("own", [&] { json_writer::to_text(document); });
    turns.add("RapidJSON", [&] { bench::writtenByRapidJson(document); });
    turns.run();
    std::printf("written: own %.1f ms, RapidJSON %.1f ms\n", turns.of("own"), turns.of("RapidJSON"));
    table.push_back({"write, against RapidJSON", turns.of("own") / turns.of("RapidJSON"), 5, 1.5, false, "x"});
}

void measureMerging(const Folders& folders, std::vector<Measure>& table)
{
    using Clock = std::chrono::steady_clock;
    LibraryFilterManager& manager = LibraryFilterManager::getLibraryFilterManager();
    const fileString target = folders / "filters.json";
    manager.setLibraryFilters(makeFilters("there"));
    manager.mergeFilters(target);
    manager.setLibraryFilters(makeFilters("new"));
    const auto begin = Clock::now();
    const bool merged = manager.mergeFilters(target);
    const std::chrono::duration<double> seconds = Clock::now() - begin;
    const bool complete = merged && manager.getLibraryFilters().size() == 2U * filterCount;
    table.push_back({"merge of 10,000 filters into 10,000", complete ? seconds.count() : noLimit, 1, 0.5, false, "s"});
}

void measureDepth(std::vector<Measure>& table)
{
    constexpr unsigned smallStack = 1U << 20;
    double time = noLimit;
    test::onSmallStack(smallStack, [&time] {
        const std::string text(1'000'000, '[');
        for (int round = 0; round < rounds; ++round) {
            const double begin = milliseconds();
            if (!json::read(text)->empty())
                return;
            time = std::min(time, milliseconds() - begin);
        }
    });
    table.push_back({"refusal of a million '[' on a 1 MiB stack", time, 10, 1, false, "ms"});
}

void measureBase64(std::vector<Measure>& table)
{
    constexpr std::size_t size = 3U << 20;
    std::mt19937 random(1);
    std::vector<unsigned char> bytes(size);
    for (unsigned char& byte : bytes)
        byte = static_cast<unsigned char>(random());
    const std::string text = Base64::encode(bytes);
    const auto input = [](const std::string& coded) { return reinterpret_cast<const unsigned char*>(coded.data()); };
    Turns turns;
    turns.add("encode", [&] { Base64::encode(bytes); });
    turns.add("decode", [&] { Base64::decode(text); });
    // OpenSSL's calls allocate the memory of their results too, as ours do.
    turns.add("OpenSSL encode", [&] {
        std::vector<unsigned char> result(text.size() + 1);
        EVP_EncodeBlock(result.data(), bytes.data(), static_cast<int>(bytes.size()));
    });
    turns.add("OpenSSL decode", [&] {
        std::vector<unsigned char> result(bytes.size() + 4);
        EVP_DecodeBlock(result.data(), input(text), static_cast<int>(text.size()));
    });
    turns.run();
    table.push_back(
        {"Base64 encode, against OpenSSL", turns.of("encode") / turns.of("OpenSSL encode"), 1.2, 1.2, false, "x"});
    table.push_back(
        {"Base64 decode, against OpenSSL", turns.of("decode") / turns.of("OpenSSL decode"), 1.5, 1.5, false, "x"});
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount == 4 && arguments[1] == std::string(turnOption))
        return runTurn(arguments[2], arguments[3]);
    const Folders folders;
    std::map<long, Manufacturer> cards = makeCards(manufacturers({arguments + 1, arguments + argumentCount}));
    ManufacturerManager::getManufacturerManager().saveModifiedManufacturers(cards, U"See the manufacturer's web site");
    const std::string text = readFile(cardsFile());
    ManufacturerManager::cleanup();

    std::vector<Measure> table;
    measureReading(text, table);
    measureCards(folders.path(), table);
    measureWriting(text, table);
    measureMerging(folders, table);
    measureDepth(table);
    measureBase64(table);
    std::printf("\n");
    return bench::printMeasures(table) ? 0 : 1;
}
