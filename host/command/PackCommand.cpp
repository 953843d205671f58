#include "host/command/PackCommand.h"

#include "host/command/CancellableWork.h"
#include "host/command/NewArchive.h"
#include "host/support/ByteText.h"
#include "host/support/DisplayText.h"
#include "host/support/FileError.h"
#include "host/support/Folders.h"
#include "host/support/ParserArguments.h"
#include "host/support/ProgressLine.h"
#include "host/support/ShownProgress.h"
#include "host/support/System.h"
#include "host/support/WholeFile.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkLibrary/Data/FileExtensions.h>

#include <CLI/CLI.hpp>

#include <limits>
#include <memory>

namespace VelkHost {
namespace {

constexpr const char* packExamples = R"(Examples:
  velk catalog pack house.calib --files textures -o house.calibz

Every file below the folder goes in, under its path there.
Exit codes: 0 written, 2 wrong command line, 4 it could not be packed, 7 cancelled
by Ctrl-C. Then an older target stays as it was.)";

constexpr std::size_t maximumDepth = 100;  // of folders inside each other

struct PackArguments
{
    std::string catalog;
    std::string folder;
    std::string target;
};

/// A file with its name in the archive.
struct PackedFile
{
    fileString path;
    std::string name;
};

// ---- What goes in --------------------------------------------------------------------------------

void collect(const fileString& folder, const std::string& prefix, std::size_t depth, const fileString& target,
             std::vector<PackedFile>& files)
{
    if (depth > maximumDepth)
        throw FileError(folder, "has too many folders inside each other; does a link lead back?");
    for (const FolderEntry& entry : folderEntries(folder)) {
        const fileString path = folder / entry.name;
        const std::string name = prefix + entry.name.utf8();
        if (entry.isFolder)
            collect(path, name + "/", depth + 1, target, files);
        else if (path.hasExtension(Library::extensions::database))
            throw FileError(path, "is another library; a packed library holds exactly one");
        else if (path != target)
            files.push_back({path, name});
    }
}

std::vector<PackedFile> filesFor(const PackArguments& arguments, const fileString& target)
{
    const fileString catalog(fromParser(arguments.catalog));
    requireFile(catalog, std::numeric_limits<std::uint64_t>::max());
    if (!catalog.hasExtension(Library::extensions::database))
        throw FileError(catalog, "is not a catalog file; its name must end with \".calib\"");
    std::vector<PackedFile> files{{catalog, catalog.stemWithExtension().utf8()}};
    const fileString folder(fromParser(arguments.folder));
    if (!isFolder(folder))
        throw FileError(folder, "is not a folder");
    collect(folder, {}, 0, target, files);
    return files;
}

// ---- Writing -------------------------------------------------------------------------------------

void write(const std::vector<PackedFile>& files, const fileString& target, Output& output)
{
    NewArchive archive(target);
    for (const PackedFile& file : files)
        archive.addFile(file.name, file.path);
    constexpr double wholeRange = 100;
    ProgressLine line(output);
    line.setText("Packing " + std::to_string(files.size()) + " files");
    line.begin(100);
    archive.watch([&](double share) { line.setValue(static_cast<std::uint64_t>(share * wholeRange)); }, &interrupted);
    if (!archive.close())
        throw Interrupted();
}

int run(const PackArguments& arguments, Output& output)
{
    const fileString target(fromParser(arguments.target));
    return runCancellable(output, [&] {
        const std::vector<PackedFile> files = filesFor(arguments, target);
        write(files, target, output);
        output.write(printableUtf8(target.humanReadableString()) + ": a library and " +
                     std::to_string(files.size() - 1) + " files, " + kilobyteText(FileUtils::fileSize(target)) + "\n");
    });
}

}  // namespace

void addPackCommand(CLI::App& catalog, Output& output, Action& action)
{
    CLI::App* const command = catalog.add_subcommand("pack", "Pack a .calib file with its other files (.calibz)");
    const auto arguments = std::make_shared<PackArguments>();
    command->add_option("FILE", arguments->catalog, "The library (.calib)")->required();
    command->add_option("--files", arguments->folder, "The folder of its textures and other files")
        ->required()
        ->type_name("DIR");
    command->add_option("-o,--output", arguments->target, "The packed library (.calibz) to write")
        ->required()
        ->type_name("FILE");
    command->footer(packExamples);
    command->callback(
        [arguments, &output, &action] { action = [arguments, &output] { return run(*arguments, output); }; });
}

}  // namespace VelkHost
