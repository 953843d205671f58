#include "VelkLibrary/Update/UpdateTest.h"

#include "support/EventLoop.h"
#include "support/ZipBuilder.h"

#include <optional>
#include <random>

namespace test {

std::string databaseBytes(char seed, std::size_t size)
{
    std::mt19937 random(static_cast<unsigned char>(seed));
    std::string bytes(size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>('0' + (random() & 63));
    return bytes;
}

std::string zipOf(const std::vector<std::pair<std::string, std::string>>& entries)
{
    ZipBuilder archive;
    for (const auto& [name, bytes] : entries) {
        ZipItem item;
        item.name = name;
        item.data = bytes;
        item.deflated = true;
        archive.add(std::move(item));
    }
    return archive.bytes();
}

UpdateTest::UpdateTest() : address(server.url("/api?key=k")), receiver_(std::make_unique<RecordingReceiver>())
{
    ensureApplication();
    server.on("/api", [this](const SeenRequest& request) { return replyTo(request); });
}

Reply UpdateTest::replyTo(const SeenRequest& request)
{
    const std::string library = request.parameter("library");
    ScriptedServer::Handler handler;
    {
        const std::lock_guard lock(mutex_);
        const auto found = answers_.find(library);
        if (found != answers_.end())
            handler = found->second;
    }
    if (handler)
        return handler(request);
    return library.empty() ? Reply{} : Reply{.status = 404, .body = "no library " + library};
}

void UpdateTest::installCore(const std::u32string& name, const std::string& bytes)
{
    writeFile(coreFolder() / name, bytes);
    core.insert(coreFolder() / name);
}

void UpdateTest::installBonus(const std::u32string& name, const std::string& bytes)
{
    writeFile(bonusFolder() / name, bytes);
    bonus.insert(bonusFolder() / name);
}

void UpdateTest::installManufacturer(const std::u32string& name, const std::string& bytes)
{
    writeFile(manufacturerFolder() / name, bytes);
    manufacturer.insert(manufacturerFolder() / name);
}

void UpdateTest::publish(const std::string& library, const std::string& bytes)
{
    answer(library, Reply::file(bytes, sha1(bytes)));
}

void UpdateTest::answer(const std::string& library, Reply reply)
{
    answer(library, [reply = std::move(reply)](const SeenRequest&) { return reply; });
}

void UpdateTest::answer(const std::string& library, ScriptedServer::Handler handler)
{
    const std::lock_guard lock(mutex_);
    answers_[library] = std::move(handler);
}

void UpdateTest::whenAskedForText(unsigned int id, std::function<void()> work)
{
    Velk::HostServices host = services();
    host.resourceString = [id, work = std::move(work)](unsigned int asked) -> std::optional<std::u32string> {
        if (asked == id)
            work();
        return std::nullopt;
    };
    Velk::installHost(std::move(host));
}

LibraryCatalogUpdate::LibraryCatalogUpdater UpdateTest::makeUpdater(bool manual)
{
    receiver_ = std::make_unique<RecordingReceiver>();
    handedOver_.clear();
    receiver_->reaction = [this](const Event& event) {
        if (event.slot == "onCatalogUpdatedEvent")
            handedOver_[event.paths.first.stemWithExtension().utf8()] = readFile(event.paths.second);
    };
    return {*receiver_, core, bonus, manufacturer, product, version, address, manual};
}

void UpdateTest::run(bool manual)
{
    auto updater = makeUpdater(manual);
    run(updater);
}

void UpdateTest::run(LibraryCatalogUpdate::LibraryCatalogUpdater& updater)
{
    run([&] { updater(); });
}

void UpdateTest::run(const std::function<void()>& work)
{
    runBesideEventLoop(work);
}

std::vector<std::string> UpdateTest::steps() const
{
    std::vector<std::string> result = receiver_->summaries();
    std::erase_if(result, [](const std::string& step) { return step.starts_with("onSetValueInGauge"); });
    return result;
}

LibraryCatalogUpdate::UpdateData UpdateTest::report() const
{
    const Event& event = receiver_->finalEvent();
    EXPECT_EQ(event.slot, "closeCatalogUpdateEvent");
    return event.data;
}

std::vector<std::string> UpdateTest::log() const
{
    const fileString path = folder() / U"user" / U"errors.log";
    std::vector<std::string> messages;
    if (!path.pathExists())
        return messages;
    std::string text = readFile(path);
    std::erase(text, '\r');
    const std::string begin = "Message: |\n";
    const std::string end = "\n...\n";
    for (std::size_t at = text.find(begin); at != std::string::npos; at = text.find(begin, at)) {
        at += begin.size();
        messages.push_back(text.substr(at, text.find(end, at) - at));
    }
    return messages;
}

std::vector<SeenRequest> UpdateTest::requests(const std::string& library, const std::string& method) const
{
    std::vector<SeenRequest> result;
    for (const SeenRequest& request : server.requests("/api"))
        if (request.method == method && request.parameter("library") == library)
            result.push_back(request);
    return result;
}

std::string UpdateTest::hashFile(const fileString& folder) const
{
    const fileString path = folder / U"catalog_hash.txt";
    if (!path.pathExists())
        return {};
    std::string text = readFile(path);
    std::erase(text, '\r');
    return text;
}

}  // namespace test
