#include "host/command/UpdateCommand.h"

#include "host/command/CommonOptions.h"
#include "host/command/UpdateReceiver.h"
#include "host/installation/CatalogUpdate.h"
#include "host/support/DisplayText.h"
#include "host/support/ExitCode.h"
#include "host/support/FileError.h"
#include "host/support/InstallHost.h"
#include "host/support/JsonText.h"
#include "host/support/LibraryPreference.h"
#include "host/support/ParserArguments.h"
#include "host/support/System.h"

#include <VelkCommon/HostServices.h>
#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Reporting/PreferenceNumbers.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkLibrary/ErrorLog.h>
#include <VelkLibrary/LibraryCatalogUpdater.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonObject>
#include <QTimer>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <chrono>
#include <memory>
#include <set>
#include <thread>

namespace VelkHost {
namespace {

using LibraryCatalogUpdate::LibraryCatalogUpdater;

constexpr const char* updateExamples = R"(Examples:
  velk update --service http://127.0.0.1:8080/
  velk update --service https://content.example/ --home ./planner --kinds core
  velk update --service http://127.0.0.1:8080/ --bonus 'Garden' --format json

An installation has its catalogs in the folders core, bonus and manufacturer below
its home. The service tells which core catalogs it lacks; of the other kinds, name
the ones to add. Ctrl-C ends the update; what is installed by then stays.

Exit codes: 0 up to date now, 2 wrong command line, 5 the output cannot be written,
6 something failed (the error log tells what), 7 cancelled.)";

constexpr std::chrono::milliseconds betweenChecks{50};

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

/// One update with its installation, from the arguments to the exit code.
class Update
{
public:
    Update(const UpdateArguments& arguments, Output& output)
        : arguments_(arguments),
          output_(output),
          kinds_(kindsOf(arguments.kinds)),
          receiver_(output, [this] { loop_.quit(); })
    {
        Velk::HostServices services = hostServices(fileString(fromParser(arguments.home)));
        if (!arguments.edition.empty())
            services.editions.words[services.editions.running] = fromParser(arguments.edition);
        services.preferences.push_back(libraryPreference(Velk::preferenceNumbers::coreLibrariesStay, !wants("core")));
        Velk::installHost(std::move(services));
    }

    int run()
    {
        const InstalledCatalogs catalogs =
            installedCatalogs({namesFromParser(arguments_.bonus), namesFromParser(arguments_.manufacturer)});
        LibraryCatalogUpdater updater(
            receiver_, wants("core") ? catalogs.core : none_, wants("bonus") ? catalogs.bonus : none_,
            wants("manufacturer") ? catalogs.manufacturer : none_, fromParser(arguments_.product),
            fromParser(arguments_.version), fromParser(arguments_.service), arguments_.manual);
        runBesideEventLoop(updater);
        output_.write(arguments_.format == "json" ? json() : text());
        return static_cast<int>(exitCode());
    }

private:
    bool wants(const char* kind) const { return kinds_.contains(kind); }

    /// Ctrl-C is looked for here, since a signal's handler may do next to nothing.
    void runBesideEventLoop(LibraryCatalogUpdater& updater)
    {
        watchInterrupts();
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [] {
            if (interrupted())
                LibraryCatalogUpdater::killDownload();
        });
        timer.start(betweenChecks);
        std::thread worker([&updater] { updater(); });
        loop_.exec();
        worker.join();
    }

    UpdateOutcome outcome() const { return updateOutcome(receiver_.report(), receiver_.installer()); }
    bool failed() const { return outcome() == UpdateOutcome::Failed; }

    ExitCode exitCode() const
    {
        if (outcome() == UpdateOutcome::Cancelled)
            return ExitCode::Cancelled;
        return failed() ? ExitCode::UpdateFailed : ExitCode::Success;
    }

    const char* outcomeName() const
    {
        switch (outcome()) {
            case UpdateOutcome::Cancelled:
                return "cancelled";
            case UpdateOutcome::Failed:
                return "failed";
            case UpdateOutcome::Installed:
                return "installed";
            default:
                return "up to date";
        }
    }

    /// The stems of the files that were handed over, including referenced files; UTF-8.
    std::vector<std::string> updatedNames() const
    {
        std::vector<std::string> names;
        if (receiver_.report())
            for (const std::string& name : receiver_.report()->updatedNames)
                names.push_back(StringConvert::toStdUtf8String(StringConvert::fromWin1252(name)));
        return names;
    }

    std::string text() const
    {
        std::string lines;
        for (const fileString& catalog : receiver_.installer().installed())
            lines += "installed  " + printableUtf8(catalog.humanReadableString()) + "\n";
        for (const CatalogInstaller::Failure& failure : receiver_.installer().failures())
            lines +=
                "kept       " + printableUtf8(failure.catalog.humanReadableString() + ": " + failure.reason) + "\n";
        if (!receiver_.report())
            return lines + "Cancelled.\n";
        if (failed())
            lines += "Not everything could be updated; see " +
                     printableUtf8(Library::ErrorLog::file().humanReadableString()) + "\n";
        else if (updatedNames().empty())
            lines += "Everything is up to date.\n";
        if (receiver_.kilobytes() > 0 && !failed())
            lines += formatWithThousandsSeparatorPrecision(static_cast<double>(receiver_.kilobytes()), 0) +
                     " KB downloaded.\n";
        return lines;
    }

    std::string json() const
    {
        QJsonArray updated;
        for (const std::string& name : updatedNames())
            updated.append(qtText(name));
        QJsonArray installed;
        for (const fileString& catalog : receiver_.installer().installed())
            installed.append(qtText(catalog.utf8()));
        QJsonArray kept;
        for (const CatalogInstaller::Failure& failure : receiver_.installer().failures())
            kept.append(QJsonObject{{QStringLiteral("path"), qtText(failure.catalog.utf8())},
                                    {QStringLiteral("reason"), qtText(failure.reason)}});
        QJsonObject object{{QStringLiteral("outcome"), qtText(outcomeName())},
                           {QStringLiteral("updated"), updated},
                           {QStringLiteral("installed"), installed},
                           {QStringLiteral("kept"), kept},
                           {QStringLiteral("kilobytes"), static_cast<double>(receiver_.kilobytes())},
                           {QStringLiteral("log"), qtText(Library::ErrorLog::file().utf8())}};
        if (receiver_.report())
            object.insert(QStringLiteral("resultCode"), static_cast<double>(receiver_.report()->resultCode));
        return jsonText(object);
    }

    const UpdateArguments& arguments_;
    Output& output_;
    const std::set<std::string> kinds_;
    const std::set<fileString> none_;
    QEventLoop loop_;
    UpdateReceiver receiver_;
};

int update(const UpdateArguments& arguments, Output& output)
{
    int argumentCount = 1;
    char name[] = "velk";
    char* programArguments[] = {name, nullptr};
    const QCoreApplication application(argumentCount, programArguments);
    try {
        return Update(arguments, output).run();
    } catch (const FileError& error) {
        output.error(error.what());
        return static_cast<int>(ExitCode::UpdateFailed);
    }
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
