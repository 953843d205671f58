#include "host/command/UnpackCommand.h"

#include "host/command/CancellableWork.h"
#include "host/installation/DataError.h"
#include "host/installation/DataLock.h"
#include "host/installation/PackageContent.h"
#include "host/installation/ReplaceTogether.h"
#include "host/support/ByteText.h"
#include "host/support/DisplayText.h"
#include "host/support/FileError.h"
#include "host/support/Folders.h"
#include "host/support/MadeFolder.h"
#include "host/support/ParserArguments.h"
#include "host/support/ShownProgress.h"
#include "host/support/System.h"
#include "host/support/TemporaryFiles.h"

#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/HostServices.h>
#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Network/WebUtils.h>
#include <VelkLibrary/Data/FileExtensions.h>
#include <VelkLibrary/Data/PlainFileName.h>
#include <VelkLibrary/LibraryImport.h>

#include <CLI/CLI.hpp>

#include <memory>
#include <vector>

namespace VelkHost {
namespace {

constexpr const char* unpackExamples = R"(Examples:
  velk unpack house.calibz                       makes house.calib and house.zip here
  velk unpack house.calibz -o libraries
  velk unpack https://content.example/house.calibz

Exit codes: 0 unpacked, 2 wrong command line, 4 it could not be unpacked, 7 cancelled
by Ctrl-C. Then nothing is left, and older files stay as they were.)";

struct UnpackArguments
{
    std::string source;
    std::string folder = ".";
};

// ---- Fetching ------------------------------------------------------------------------------------

/// What the transfer reports.
struct Transfer
{
    ProgressLine line;
    bool begun = false;
};

int showTransfer(void* data, double toReceive, double received, double, double)
{
    auto& transfer = *static_cast<Transfer*>(data);
    if (!transfer.begun && toReceive > 0) {
        transfer.line.begin(static_cast<std::uint64_t>(toReceive / bytesPerKilobyte) + 1, "KB");
        transfer.begun = true;
    }
    transfer.line.setValue(static_cast<std::uint64_t>(received / bytesPerKilobyte));
    return interrupted() ? 1 : 0;
}

void download(const std::string& url, const fileString& target, Output& output)
{
    watchInterrupts();
    Transfer transfer{ProgressLine(output)};
    transfer.line.setText("Downloading");
    std::string reason;
    unsigned int code = 0;
    if (Curl::get().download_to_location(url, target, {}, &transfer, &showTransfer, reason, code))
        return;
    if (interrupted())
        throw Interrupted();
    throw TransferError(url, "cannot be downloaded (" + reason + ")");
}

/// The last piece of the address without its extension, where that can name a file.
fileString stemOf(const std::string& url)
{
    const std::string shown = WebUtils::withoutUserInfo(url);
    const std::string path = shown.substr(0, shown.find_first_of("?#"));
    const fileString stem = fileString(path.substr(path.find_last_of('/') + 1)).stem();
    return Library::isPlainFileName(stem.utf8()) ? stem : fileString(std::string("library"));
}

// ---- Unpacking -----------------------------------------------------------------------------------

std::string describe(const fileString& path)
{
    const bool isArchive = path.hasExtension(Library::extensions::referencedFiles);
    const std::string entries =
        isArchive ? ", " + std::to_string(ZipUtils::getSizeOfArchive(path)) + " entries" : std::string();
    return printableUtf8(path.humanReadableString()) + ": " + kilobyteText(FileUtils::fileSize(path)) + entries + "\n";
}

/// Where a library is unpacked to: the paths without their extensions.
struct Target
{
    fileString folder;
    fileString stem;

    fileString file(const char* extension) const { return folder / (stem + fileString(extension)); }
};

/// Unpacks into the temporary folder, and moves the files from there once they are complete.
void unpackLocal(const fileString& archive, const fileString& named, const Target& target, Output& output)
{
    const auto progress = std::make_shared<ShownProgress>(output, ShownProgress::Cancel::answered);
    try {
        const PackageContent content(archive);
        const auto [database, others] = LibraryImport::unpack(archive, true, progress);
        if (interrupted())
            throw Interrupted();
        content.requireUnpacked(database.value_or(fileString()), others.value_or(fileString()), [] {
            if (interrupted())
                throw Interrupted();
        });
        std::vector<FilePlacement> placements;
        if (others)
            placements.push_back({*others, target.file(Library::extensions::referencedFiles)});
        placements.push_back({*database, target.file(Library::extensions::database)});
        // Of two who unpack editions of the library, or merge textures into it, one comes after the other.
        const FileLock lock = lockFile(target.file(Library::extensions::referencedFiles), "unpacking a library");
        replaceTogether(placements);
        for (auto placement = placements.rbegin(); placement != placements.rend(); ++placement)
            output.write(describe(placement->target));
    } catch (const FileError& error) {
        // A downloaded archive is known by its address.
        throw FileError(error.path() == archive ? named : error.path(), error.why());
    }
}

void unpack(const UnpackArguments& arguments, Output& output)
{
    const std::string source = fromParser(arguments.source);
    const fileString folder(fromParser(arguments.folder));
    const bool isAddress = Curl::downloadable(source);
    if (!isAddress && !fileString(source).pathExists())
        throw FileError(WebUtils::withoutUserInfo(source),
                        "does not exist");  // as it may be an address of another kind
    MadeFolder made(folder);
    const TemporaryFiles temporary(*Velk::host(), absolutePath(folder));
    if (isAddress) {
        const fileString archive = temporary.path() / U"library.calibz";
        download(source, archive, output);
        unpackLocal(archive, WebUtils::withoutUserInfo(source), {folder, stemOf(source)}, output);
    } else {
        unpackLocal(source, source, {folder, fileString(source).stem()}, output);
    }
    made.keep();
}

int run(const UnpackArguments& arguments, Output& output)
{
    return runCancellable(output, [&] { unpack(arguments, output); });
}

}  // namespace

void addUnpackCommand(CLI::App& app, Output& output, Action& action)
{
    CLI::App* const command = app.add_subcommand("unpack", "Take a packed library (.calibz) apart");
    const auto arguments = std::make_shared<UnpackArguments>();
    command->add_option("SOURCE", arguments->source, "A packed library: a file, or an address (http, https)")
        ->required();
    command->add_option("-o,--output", arguments->folder, "The folder to unpack into (default: this one)")
        ->type_name("DIR");
    command->footer(unpackExamples);
    command->callback(
        [arguments, &output, &action] { action = [arguments, &output] { return run(*arguments, output); }; });
}

}  // namespace VelkHost
