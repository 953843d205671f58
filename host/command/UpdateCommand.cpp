#include "host/command/UpdateCommand.h"

#include "host/command/CommonOptions.h"
#include "host/command/UpdateReceiver.h"
#include "host/command/UpdateReport.h"
#include "host/installation/DataError.h"
#include "host/installation/LibraryUpdate.h"
#include "host/support/ExitCode.h"
#include "host/support/FileError.h"
#include "host/support/InstallHost.h"
#include "host/support/LastWords.h"
#include "host/support/LibraryPreference.h"
#include "host/support/ParserArguments.h"
#include "host/support/System.h"
#include "host/support/TemporaryFiles.h"

#include <VelkCommon/HostServices.h>
#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Reporting/PreferenceNumbers.h>
#include <VelkCommon/Text/StringUtils.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QObject>
#include <QTimerEvent>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <stop_token>
#include <thread>

namespace VelkHost {
namespace {

constexpr const char* updateExamples = R"(Examples:
  velk update --service http://127.0.0.1:8080/
  velk update --service https://content.example/ --home ./planner --kinds core
  velk update --service http://127.0.0.1:8080/ --bonus 'Garden' --format json

An installation has its catalogs in the folders core, bonus and manufacturer below
its home. The service tells which core catalogs it lacks; of the other kinds, name
the ones to add. Ctrl-C ends the update; what is installed by then stays. What an
update that was interrupted has left undone, the next one repairs.

Exit codes: 0 up to date now, 2 wrong command line, 5 the output cannot be written,
6 something failed (the error log tells what), 7 cancelled.)";

constexpr std::chrono::milliseconds betweenChecks{50};
constexpr std::chrono::milliseconds patience{1500};  // with an update that is to stop

struct UpdateArguments
{
    std::string service;
    std::string kinds = "core,bonus,manufacturer";
    std::vector<std::string> bonus;
    std::vector<std::string> manufacturer;
    std::string product = updateProduct;
    std::string version = updateVersion;
    std::string edition;
    std::string home;
    std::string format = "text";
    bool manual = false;
    bool verify = false;
};

void addOptions(CLI::App& command, UpdateArguments& arguments)
{
    command.add_option("--service", arguments.service, "The content service's address")->required()->type_name("URL");
    addHomeOption(command, arguments.home);
    command.add_option("--kinds", arguments.kinds, "What to update: core, bonus, manufacturer, separated by \",\"")
        ->type_name("KINDS");
    command.add_option("--bonus", arguments.bonus, "A bonus library to add; may be repeated")
        ->allow_extra_args(false)
        ->type_name("NAME");
    command.add_option("--manufacturer", arguments.manufacturer, "A manufacturer's library to add; may be repeated")
        ->allow_extra_args(false)
        ->type_name("NAME");
    command.add_flag("--manual", arguments.manual, "Update as if the user had asked for it: core catalogs only");
    command.add_flag("--verify", arguments.verify, "Read every installed file, to find damage that a size hides");
    command.add_option("--product", arguments.product, "The product to tell the service (default: velk)")
        ->type_name("P");
    command.add_option("--version", arguments.version, "The product's version (default: 1)")->type_name("V");
    command.add_option("--edition", arguments.edition, "The product's edition (default: Standard)")->type_name("WORD");
    command.add_option("--format", arguments.format, "text or json")
        ->check(CLI::IsMember({"text", "json"}))
        ->type_name("FORMAT");
}

std::set<std::string> kindsOf(const std::string& list)
{
    std::set<std::string> kinds;
    for (const std::string& kind : StringUtils::tokenizeString(list, ',')) {
        if (kind != "core" && kind != "bonus" && kind != "manufacturer")
            throw CLI::ValidationError("--kinds", "there is no kind \"" + kind + "\"");
        kinds.insert(kind);
    }
    return kinds;
}

std::vector<std::string> namesFromParser(std::vector<std::string> names)
{
    std::transform(names.begin(), names.end(), names.begin(), fromParser);
    return names;
}

/// The request that the command line makes.
UpdateRequest requestOf(const UpdateArguments& arguments, const std::set<std::string>& kinds)
{
    UpdateRequest request;
    request.service = fromParser(arguments.service);
    request.product = fromParser(arguments.product);
    request.version = fromParser(arguments.version);
    request.core = kinds.contains("core");
    request.bonus = kinds.contains("bonus");
    request.manufacturer = kinds.contains("manufacturer");
    request.addedBonus = namesFromParser(arguments.bonus);
    request.addedManufacturer = namesFromParser(arguments.manufacturer);
    request.manual = arguments.manual;
    request.verify = arguments.verify;
    return request;
}

Velk::HostServices servicesFor(const UpdateArguments& arguments, const UpdateRequest& request)
{
    Velk::HostServices services = hostServices(fileString(fromParser(arguments.home)));
    if (!arguments.edition.empty())
        services.editions.words[services.editions.running] = fromParser(arguments.edition);
    services.preferences.push_back(libraryPreference(Velk::preferenceNumbers::coreLibrariesStay, !request.core));
    return services;
}

/// Does something from time to time while an event loop runs. It has no signal, as connections are among what Qt does
/// not survive where memory runs out.
class Repeating : public QObject
{
public:
    Repeating(std::chrono::milliseconds pause, std::function<void()> work) : work_(std::move(work))
    {
        startTimer(pause);
    }

protected:
    void timerEvent(QTimerEvent* /*event*/) override { work_(); }

private:
    const std::function<void()> work_;
};

/// An update on a thread of its own, beside the event loop that its progress needs.
class Update
{
public:
    Update(const UpdateRequest& request, Output& output) : request_(request), output_(output), receiver_(output) {}

    /// Ctrl-C is looked for here, since a signal's handler may do next to nothing. Throws what the update threw.
    UpdateResult run()
    {
        watchInterrupts();
        const Repeating looking(betweenChecks, [this] { lookForInterrupt(); });
        std::jthread worker([this](const std::stop_token&) { work(); });
        loop_.exec();
        worker.join();
        receiver_.clear();
        if (failure_)
            std::rethrow_exception(failure_);
        return result_;
    }

    std::size_t kilobytes() const noexcept { return receiver_.kilobytes(); }

private:
    void work() noexcept
    {
        try {
            result_ = updateLibraries(receiver_, request_,
                                      {[](const std::function<void()>& replace) { replace(); }, {}}, stop_.get_token());
        } catch (...) {
            failure_ = std::current_exception();
        }
        QMetaObject::invokeMethod(&loop_, &QEventLoop::quit, Qt::QueuedConnection);
    }

    /// What cannot be stopped, the unpacking of a library, is left behind: the next update removes and repairs.
    void lookForInterrupt()
    {
        if (!interrupted())
            return;
        const auto now = std::chrono::steady_clock::now();
        if (!stop_.stop_requested()) {
            interruptedAt_ = now;
            stop_.request_stop();
        } else if (now - interruptedAt_ > patience) {
            receiver_.clear();
            output_.write("Cancelled.\n");
            std::_Exit(static_cast<int>(ExitCode::Cancelled));
        }
    }

    const UpdateRequest& request_;
    Output& output_;
    QEventLoop loop_;
    UpdateReceiver receiver_;
    std::stop_source stop_;
    std::chrono::steady_clock::time_point interruptedAt_;
    UpdateResult result_;         // the worker's until it has ended
    std::exception_ptr failure_;  // likewise
};

ExitCode exitCodeOf(UpdateOutcome outcome)
{
    if (outcome == UpdateOutcome::Cancelled)
        return ExitCode::Cancelled;
    return outcome == UpdateOutcome::Failed ? ExitCode::UpdateFailed : ExitCode::Success;
}

int update(const UpdateArguments& arguments, Output& output)
{
    int argumentCount = 1;
    char name[] = "velk";
    char* programArguments[] = {name, nullptr};
    auto whileMade = std::make_optional<EndWithoutMemory>();
    const QCoreApplication application(argumentCount, programArguments);
    whileMade.reset();
    const UpdateRequest request = requestOf(arguments, kindsOf(arguments.kinds));
    try {
        const TemporaryFiles temporaryFiles(servicesFor(arguments, request));
        Update update(request, output);
        const UpdateResult result = update.run();
        writeUpdateReport(output, result, update.kilobytes(), arguments.format == "json");
        return static_cast<int>(exitCodeOf(result.outcome));
    } catch (const FileError& error) {
        output.error(error.what());
    } catch (const DataError& error) {
        output.error(error.what(), error.advice());
    }
    return static_cast<int>(ExitCode::UpdateFailed);
}

void check(const UpdateArguments& arguments)
{
    if (!Curl::downloadable(fromParser(arguments.service)))
        throw CLI::ValidationError("--service", "must be an address that begins with http:// or https://");
    const bool core = kindsOf(arguments.kinds).contains("core");
    if (arguments.manual && !core)
        throw CLI::ValidationError("--manual", "is about core catalogs, which --kinds leaves out");
}

}  // namespace

void addUpdateCommand(CLI::App& app, Output& output, Action& action)
{
    CLI::App* const command = app.add_subcommand("update", "Bring the installed libraries up to date from a service");
    const auto arguments = std::make_shared<UpdateArguments>();
    addOptions(*command, *arguments);
    command->footer(updateExamples);
    command->callback([arguments, &output, &action] {
        check(*arguments);
        action = [arguments, &output] { return update(*arguments, output); };
    });
}

}  // namespace VelkHost
