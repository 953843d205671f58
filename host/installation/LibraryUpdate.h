#pragma once

#include "host/installation/UpdateNews.h"
#include "host/support/Reason.h"

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/UpdateData.h>

#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

class QObject;

namespace VelkHost {

/// The name under which a program asks the content service, unless the user gives another.
constexpr const char* updateProduct = "velk";
constexpr const char* updateVersion = "1";

/// What an update is to do.
struct UpdateRequest
{
    std::string service;  ///< the content service's address, UTF-8
    std::string product = updateProduct;
    std::string version = updateVersion;
    bool core = true;          ///< update the core libraries; the preference for that must agree
    bool bonus = true;         ///< update the bonus libraries
    bool manufacturer = true;  ///< update the manufacturers' libraries
    /// The names of libraries to add, with or without their extension.
    std::vector<std::string> addedBonus;
    std::vector<std::string> addedManufacturer;
    bool manual = false;  ///< as if the user had asked for it: core libraries only
    bool verify = false;  ///< read every installed file, instead of trusting its size and time
};

enum class UpdateOutcome { Cancelled, Failed, Installed, UpToDate };

/// What an update did.
struct UpdateResult
{
    UpdateOutcome outcome = UpdateOutcome::Failed;
    std::optional<Reason> failure;            ///< what went wrong with the update as a whole
    std::vector<LibraryNews> news;            ///< about its libraries
    LibraryCatalogUpdate::UpdateData module;  ///< the final report of the module's run
};

/// How the caller takes part in an update. The functions are called on the thread of updateLibraries().
struct UpdateCallbacks
{
    /// Calls what it is given at a moment when nobody has the installed files open.
    std::function<void(const std::function<void()>& replace)> whileUnused;
    /// A catalog file was added or replaced.
    std::function<void(const fileString& catalog)> installed;
};

/// Brings the installed libraries up to date: runs the module's update and, around it, keeps the installation's own
/// record, installs and checks what came, repairs what an interrupted update has left, and tells what happened. To be
/// called on a worker thread. Updates of an installation take turns.
///
/// `receiver` gets the progress (see LibraryProgressBase) and must not be destroyed before its thread has got
/// something. What the module hands over by events needs no slot. Ends within moments when `stop` is requested, except
/// while the module unpacks a library. Throws std::bad_alloc, and FileError or DataError when nothing could be begun.
UpdateResult updateLibraries(QObject& receiver, const UpdateRequest& request, const UpdateCallbacks& callbacks,
                             const std::stop_token& stop);

}  // namespace VelkHost
