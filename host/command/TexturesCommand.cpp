#include "host/command/TexturesCommand.h"

#include "host/command/CancellableWork.h"
#include "host/installation/TextureMerge.h"
#include "host/support/DisplayText.h"
#include "host/support/FileError.h"
#include "host/support/ParserArguments.h"
#include "host/support/ShownProgress.h"
#include "host/support/System.h"
#include "host/support/TemporaryFiles.h"

#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkCommon/Files/FileReaper.h>
#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/HostServices.h>

#include <CLI/CLI.hpp>

#include <memory>

namespace VelkHost {
namespace {

constexpr const char* texturesExamples = R"(Examples:
  velk textures merge house.zip textures/house.zip

Entries that both archives have stay as they are in DEST. SOURCE is kept.
Exit codes: 0 merged, 2 wrong command line, 4 they could not be merged, 7 cancelled
by Ctrl-C. Then DEST is as it was.)";

struct MergeArguments
{
    std::string source;
    std::string destination;
};

void merge(const fileString& source, const fileString& destination, Output& output)
{
    if (!source.pathExists())
        throw FileError(source, "does not exist");
    if (ZipUtils::getSizeOfArchive(source) == 0)
        throw FileError(source, "is not a readable zip archive, or has no entries");
    if (destination.pathExists() && !ZipUtils::canAddToArchive(destination))
        throw FileError(destination, "is not a zip archive that can be added to");
    const TemporaryFiles temporaryFiles(*Velk::host());
    TextureMerge merge(destination, "merging textures");
    // The module's operation removes its source, so it gets a copy.
    fileString copy;
    copy.generateAsTempName(ZipUtils::getExtension());
    const FileReaper reaper(copy);
    ShownProgress progress(output, ShownProgress::Cancel::thrown);
    try {
        if (!FileUtils::copyFile(source, copy, true))
            throw FileError(destination, "cannot be written");
        merge.add(copy, progress);
    } catch (const FileError& error) {
        throw FileError(destination, "could not be merged with " + source.humanReadableString() +
                                         "; it is unchanged (" + error.reason() + ")");
    }
    merge.keepNew();
}

int run(const MergeArguments& arguments, Output& output)
{
    const fileString destination(fromParser(arguments.destination));
    return runCancellable(output, [&] {
        merge(fileString(fromParser(arguments.source)), destination, output);
        output.write(printableUtf8(destination.humanReadableString()) + ": " +
                     std::to_string(ZipUtils::getSizeOfArchive(destination)) + " entries\n");
    });
}

}  // namespace

void addTexturesCommand(CLI::App& app, Output& output, Action& action)
{
    CLI::App* const textures = app.add_subcommand("textures", "Put archives of textures in place (.zip)");
    textures->require_subcommand(1);
    CLI::App* const command = textures->add_subcommand("merge", "Add an archive's entries to another");
    const auto arguments = std::make_shared<MergeArguments>();
    command->add_option("SOURCE", arguments->source, "The archive to take entries from")->required();
    command->add_option("DEST", arguments->destination, "The archive to add them to; made when missing")->required();
    command->footer(texturesExamples);
    command->callback(
        [arguments, &output, &action] { action = [arguments, &output] { return run(*arguments, output); }; });
}

}  // namespace VelkHost
