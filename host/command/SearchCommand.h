#pragma once

#include "host/command/CommandLine.h"
#include "host/installation/LibrarySearch.h"
#include "host/support/Output.h"

#include <string>
#include <vector>

namespace VelkHost {

/// Adds "search" to the subcommands of `app`.
void addSearchCommand(CLI::App& app, Output& output, Action& action);

/// What "velk search" was asked for.
struct SearchOptions
{
    SearchRequest request;
    std::vector<fileString> libraries;  ///< files and folders; empty for the installed ones
    std::size_t limit = 20;             ///< hits to show; 0 for all
    bool json = false;
    bool explain = false;
};

/// Runs one search and shows it; returns the exit code.
int search(const SearchOptions& options, Output& output);

}  // namespace VelkHost
