#pragma once

#include <VelkCommon/Reporting/applicationManager.h>
#include <VelkLibrary/LibraryCatalogUpdater.h>

#include "VelkLibrary/Update/RecordingReceiver.h"
#include "support/Hashes.h"
#include "support/ScriptedServer.h"
#include "support/TestHost.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace test {

/// Bytes that depend on `seed` and hardly shrink when they are packed.
std::string databaseBytes(char seed, std::size_t size = 5'000);

/// A zip archive of named entries.
std::string zipOf(const std::vector<std::pair<std::string, std::string>>& entries);

/// A host application that is called so.
class NamedApplication : public applicationManager
{
public:
    explicit NamedApplication(std::string name) : name_(std::move(name)) {}
    std::string getInstanceName() const override { return name_; }

private:
    std::string name_;
};

/// The process is in that folder, as long as the object lives.
class CurrentFolder
{
public:
    explicit CurrentFolder(const fileString& folder) { std::filesystem::current_path(folder.utf8()); }
    ~CurrentFolder() { std::filesystem::current_path(before_); }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;

private:
    const std::filesystem::path before_ = std::filesystem::current_path();
};

/// A run of the update against a content service in this process. The service answers at "/api?key=k" by
/// the name of the library that is asked for.
class UpdateTest : public TestHost
{
    // These stand before the server, whose threads use them.
    std::mutex mutex_;
    std::map<std::string, ScriptedServer::Handler> answers_;

protected:
    UpdateTest();

    fileString coreFolder() const { return folder() / U"core"; }
    fileString bonusFolder() const { return folder() / U"bonus"; }
    fileString manufacturerFolder() const { return folder() / U"manufacturer"; }
    fileString referencedFolder() const { return folder() / U"referenced"; }
    fileString downloads(const std::u32string& kind) const { return folder() / U"temp" / (U"velk.downloads." + kind); }

    /// Puts a catalog into its folder and into the set that the update is given.
    void installCore(const std::u32string& name, const std::string& bytes);
    void installBonus(const std::u32string& name, const std::string& bytes);
    void installManufacturer(const std::u32string& name, const std::string& bytes);

    /// Sets what the service has: a file with its hash as the entity tag, or any answer.
    void publish(const std::string& library, const std::string& bytes);
    void answer(const std::string& library, Reply reply);
    void answer(const std::string& library, ScriptedServer::Handler handler);
    void publishIndex(const std::string& lines) { publish("Standard_Core_Content_Index.txt", lines); }

    /// Does `work` on the worker whenever it asks the host for that text, as it does right before the step that the
    /// text is about.
    void whenAskedForText(unsigned int id, std::function<void()> work);

    LibraryCatalogUpdate::LibraryCatalogUpdater makeUpdater(bool manual);
    /// Makes an updater with a new receiver and runs it to its end.
    void run(bool manual = false);
    /// Runs an updater that was made before.
    void run(LibraryCatalogUpdate::LibraryCatalogUpdater& updater);
    /// Runs any other work on the worker thread.
    void run(const std::function<void()>& work);
    void destroyReceiver() { receiver_.reset(); }

    RecordingReceiver& receiver() { return *receiver_; }
    /// The calls, except those that depend on how the bytes arrived.
    std::vector<std::string> steps() const;
    /// The final report; fails the test when there is none.
    LibraryCatalogUpdate::UpdateData report() const;
    /// The paths handed over: name of the installed catalog, bytes of the new catalog file.
    std::map<std::string, std::string> handedOver() const { return handedOver_; }

    /// The messages of the error log, in order.
    std::vector<std::string> log() const;
    /// What the service was asked about a library, by method.
    std::vector<SeenRequest> requests(const std::string& library, const std::string& method) const;
    std::size_t downloadsOf(const std::string& library) const { return requests(library, "GET").size(); }
    /// The text of a hash file, without what text mode adds; empty when there is no such file.
    std::string hashFile(const fileString& folder) const;

    ScriptedServer server;
    std::string address;
    std::set<fileString> core;
    std::set<fileString> bonus;
    std::set<fileString> manufacturer;
    std::string product = "planner";
    std::string version = "12";

private:
    Reply replyTo(const SeenRequest& request);

    std::unique_ptr<RecordingReceiver> receiver_;
    std::map<std::string, std::string> handedOver_;
};

}  // namespace test
