#include "host/command/ServeCommand.h"

#include "host/command/CommonOptions.h"
#include "host/command/PublishReportText.h"
#include "host/service/SelfSigned.h"
#include "host/service/ServiceError.h"
#include "host/service/SiteService.h"
#include "host/support/ByteText.h"
#include "host/support/DisplayText.h"
#include "host/support/ExitCode.h"
#include "host/support/FileError.h"
#include "host/support/ParserArguments.h"
#include "host/support/System.h"

#include <CLI/CLI.hpp>

#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace VelkHost {
namespace {

constexpr const char* serveExamples = R"(Examples:
  velk serve site                           on a free port of this machine
  velk serve site --port 8080 --quiet
  velk serve site --tls cert.pem key.pem
  velk serve site --tls-self tls            with a certificate made for this machine;
                                            clients trust tls/velk-service.crt

A new edition (velk publish) is served at once. Ctrl-C ends it. For the internet,
let nginx serve the site: velk publish --nginx, and docs/content-service.md.

Exit codes: 0 ended by Ctrl-C, 2 wrong command line, 8 it cannot be served.)";

constexpr int highestPort = 65'535;
constexpr std::chrono::milliseconds betweenInterruptChecks{50};

struct ServeArguments
{
    std::string site;
    std::string address = ServiceOptions().address;
    int port = 0;
    std::vector<std::string> tls;
    std::string selfSigned;
    bool quiet = false;
};

ServiceOptions optionsFrom(const ServeArguments& arguments)
{
    ServiceOptions options;
    options.site = fileString(fromParser(arguments.site));
    options.address = fromParser(arguments.address);
    options.port = arguments.port;
    if (!arguments.tls.empty())
        options.tls = {fileString(fromParser(arguments.tls[0])), fileString(fromParser(arguments.tls[1]))};
    if (!arguments.selfSigned.empty())
        options.tls = selfSignedCertificate(fileString(fromParser(arguments.selfSigned)));
    return options;
}

int runServe(const ServeArguments& arguments, Output& output)
{
    std::mutex mutex;
    try {
        watchInterrupts();
        ServiceOptions options = optionsFrom(arguments);
        if (!arguments.quiet)
            options.served = [&](const ServedRequest& served) {
                const std::lock_guard lock(mutex);
                output.write("  " + std::to_string(served.status) + " " + served.method + " " +
                             printableUtf8(served.target) +
                             (served.bodyBytes > 0 ? "  " + byteText(served.bodyBytes) : std::string()) + "\n");
            };
        const SiteService service(options);
        {
            const std::lock_guard lock(mutex);
            output.write("The service address is " + service.address() +
                         "\nManufacturers: " + service.manufacturersAddress() +
                         "\nLogos:         " + service.logoAddress() + "\nCtrl-C ends the service.\n");
        }
        while (!interrupted())
            std::this_thread::sleep_for(betweenInterruptChecks);
    } catch (const FileError& error) {
        output.error(error.what());
        return static_cast<int>(ExitCode::ServiceFailed);
    } catch (const ServiceError& error) {
        output.error(error.what());
        return static_cast<int>(ExitCode::ServiceFailed);
    }
    output.write("The service has ended.\n");
    return static_cast<int>(ExitCode::Success);
}

}  // namespace

void addServeCommand(CLI::App& app, Output& output, Action& action)
{
    CLI::App* const command = app.add_subcommand("serve", "Let clients update from a published site");
    const auto arguments = std::make_shared<ServeArguments>();
    command->add_option("SITE", arguments->site, "A folder that velk publish made")->required();
    addNumberOption(*command, "--port", "The port (default: any free one)", 0, highestPort,
                    [arguments](std::int64_t port) { arguments->port = static_cast<int>(port); });
    command
        ->add_option("--address", arguments->address,
                     "The address to listen on (default: 127.0.0.1,\nwhich only this machine can reach)")
        ->type_name("IP");
    CLI::Option* const tls = command
                                 ->add_option("--tls", arguments->tls,
                                              "Serve over TLS with this certificate and its\nprivate key (PEM files)")
                                 ->expected(2)
                                 ->type_name("CERT KEY");
    command
        ->add_option("--tls-self", arguments->selfSigned,
                     "Serve over TLS with a certificate made for this\nmachine and kept in this folder")
        ->excludes(tls)
        ->type_name("DIR");
    command->add_flag("-q,--quiet", arguments->quiet, "Do not show the requests");
    command->footer(serveExamples);
    command->callback(
        [arguments, &output, &action] { action = [arguments, &output] { return runServe(*arguments, output); }; });
}

}  // namespace VelkHost
