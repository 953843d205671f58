#include "host/command/PublishCommand.h"

#include "host/command/PublishReportText.h"
#include "host/service/NginxConfiguration.h"
#include "host/service/Publisher.h"
#include "host/support/DisplayText.h"
#include "host/support/ExitCode.h"
#include "host/support/FileError.h"
#include "host/support/ParserArguments.h"
#include "host/support/TemporaryFiles.h"

#include <VelkCommon/HostServices.h>

#include <CLI/CLI.hpp>

#include <memory>

namespace VelkHost {
namespace {

constexpr const char* publishExamples = R"(Examples:
  velk publish content -o site                    the next edition of site
  velk publish content -o site --nginx nginx      and what nginx needs to serve it
  velk serve site                                 try it out

The folder has
  core/*.calib              catalogs that every client installs
  referenced/*.zip          archives of files that core catalogs refer to
  bonus/*.calibz            packed libraries (see velk catalog pack)
  manufacturer/*.calibz     packed libraries of manufacturers
  manufacturer_data.json    the manufacturers' cards, and logos/ with their logos
  withdrawn.txt             lines "NAME: MESSAGE" of libraries to be refused

Clients that read meanwhile get the old edition or the new one.

Exit codes: 0 published, or nothing had changed; 2 wrong command line; 8 the folder
cannot be published, or the site cannot be written; the old edition stays.)";

struct PublishArguments
{
    std::string folder;
    std::string site;
    std::string nginx;
};

int runPublish(const PublishArguments& arguments, Output& output)
{
    const fileString site(fromParser(arguments.site));
    try {
        const TemporaryFiles temporaryFiles(*Velk::host());
        output.write(publishReportText(publish(fileString(fromParser(arguments.folder)), site), site));
        if (!arguments.nginx.empty()) {
            const fileString folder(fromParser(arguments.nginx));
            writeNginxConfiguration(site, folder);
            output.write("Wrote velk-maps.conf and velk-locations.conf to " + printableUtf8(folder.utf8()) +
                         "; let nginx reload them.\n");
        }
        return static_cast<int>(ExitCode::Success);
    } catch (const PublishError& error) {
        for (const PublishProblem& problem : error.problems())
            output.error(problem.path.humanReadableString() + ": " + problem.reason);
        output.error("nothing was published", "The edition in force, if there is one, is unchanged.");
    } catch (const FileError& error) {
        output.error(error.what());
    }
    return static_cast<int>(ExitCode::ServiceFailed);
}

}  // namespace

void addPublishCommand(CLI::App& app, Output& output, Action& action)
{
    CLI::App* const command = app.add_subcommand("publish", "Make a site of libraries that clients update from");
    const auto arguments = std::make_shared<PublishArguments>();
    command->add_option("FOLDER", arguments->folder, "The folder to publish")->required();
    command->add_option("-o,--output", arguments->site, "The site's folder; made when missing")
        ->required()
        ->type_name("SITE");
    command->add_option("--nginx", arguments->nginx, "Also write the configuration for nginx into this folder")
        ->type_name("DIR");
    command->footer(publishExamples);
    command->callback(
        [arguments, &output, &action] { action = [arguments, &output] { return runPublish(*arguments, output); }; });
}

}  // namespace VelkHost
