#pragma once

/// @file
/// The one door through which a host supplies what the library asks for. Everything has a default
/// that is safe and useful, so a host fills in what it has and installs it once at start-up:
///
///     Velk::HostServices services;
///     services.folders.userDatabase = fileString(std::u32string(U"C:/Users/ann/Libraries"));
///     services.showMessage = [](const error::Message& message) { return myMessageBox(message); };
///     Velk::installHost(std::move(services));

#include <VelkCommon/Export.h>
#include <VelkCommon/Files/fileString.h>
#include <VelkCommon/Reporting/MessagingSystem.h>
#include <VelkCommon/Reporting/applicationManager.h>

#include <QImage>

#include <any>
#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Velk {

/// The well-known folders. An empty one means the default: a folder below the user's data folder of
/// the system ("velk/..." in $XDG_DATA_HOME or ~/.local/share; %LOCALAPPDATA% on Windows), and for
/// `temp` a private folder of this user below the system's temporary folder.
struct HostFolders
{
    fileString userDatabase;                       ///< the user's libraries and "errors.log"
    fileString coreLibraryDatabase;                ///< libraries that come with the application
    fileString bonusLibraryDatabase;               ///< further libraries of the application
    fileString manufacturerLibrary;                ///< libraries of manufacturers
    fileString manufacturerData;                   ///< manufacturers' addresses and logos
    fileString proprietaryLibraryReferencedFiles;  ///< files that library content refers to
    fileString userTexture;                        ///< the user's textures
    fileString temp;                               ///< downloads and unpacking
};

/// The editions of the product. The content service has a list of the core catalogs for each: a file
/// named by the edition's word and "_Core_Content_Index.txt".
struct HostEditions
{
    /// The words; each makes a plain file name. UTF-8.
    std::array<std::string, 10> words = {"Standard",  "Professional", "Premium", "Enterprise", "Interior",
                                         "Landscape", "Education",    "Student", "Home",       "Trial"};
    std::size_t running = 0;  ///< the index of the edition that runs; a wrong one counts as 0
};

/// How numbers are written for people.
struct NumberFormat
{
    std::string thousandsSeparator = ",";  ///< between groups of three digits, UTF-8; may be empty
    std::string decimalPoint = ".";        ///< UTF-8
};

/// A numbered preference with the value that it has at start-up.
struct HostPreference
{
    std::size_t number = 0;   ///< see PreferenceNumbers.h for those in use
    std::string description;  ///< for messages about it, UTF-8
    std::any value;           ///< of the type that it is read and written as
};

/// One failed assertion. The texts are valid during the call only.
struct AssertionReport
{
    const char* sourceFile = "";  ///< where the assertion stands
    std::size_t line = 0;         ///< the line there, from 1 on
    long kind = 0;                ///< -4 for all of the library's own
    const char* expression = "";  ///< what should have been true, or what is wrong
};

/// What a host supplies. The functions may be called from any thread, several at a time, and must not
/// throw; one that throws all the same counts as absent for that call.
struct HostServices
{
    /// Where the library's files are. Default: see HostFolders.
    HostFolders folders;

    /// A file of certificates (PEM) of the authorities that servers are verified against, in place of the
    /// system's. Empty: the system's. One that cannot be read makes every HTTPS transfer fail.
    fileString certificateFile;

    /// The translation of a literal into the user's language; empty result or absent: the literal.
    std::function<std::u32string(std::u32string_view literal)> translate;

    /// The numbered text in the user's language; no result or absent: the built-in English text.
    std::function<std::optional<std::u32string>(unsigned int id)> resourceString;

    /// Default: ten common words, the first of which ("Standard") runs.
    HostEditions editions;

    /// Default: "1,234.5".
    NumberFormat numberFormat;

    /// Initial values; they replace what the store held. Numbers in use that are not listed get the
    /// defaults of PreferenceNumbers.h.
    std::vector<HostPreference> preferences;

    /// Told of every successful write of a preference, to keep it. Absent: preferences last as long as
    /// the process.
    std::function<void(std::size_t number, const std::any& value)> preferenceChanged;

    /// Shows a message and returns the button pressed. Absent: standard error, `Ok`.
    std::function<error::Button(const error::Message& message)> showMessage;

    /// Whether assertions are reported. Absent: they are.
    std::function<bool()> assertionReportsEnabled;

    /// Reports an assertion; true asks for a break into an attached debugger. Absent: standard error,
    /// false.
    std::function<bool(const AssertionReport& report)> reportAssertion;

    /// Told when files came into a folder. Absent: nothing happens.
    std::function<void(const fileString& folder)> fileSearchReset;

    /// The image of a resource name; a null image or absent: ResourceHandler has no such image.
    std::function<QImage(std::string_view name)> loadImage;

    /// The application object; it outlives the host's use of the library. Null: a default named "velk".
    applicationManager* application = nullptr;
};

/// Installs what the host supplies, in place of what was installed before. Call it at start-up, before
/// other threads use the library; later calls are safe, and each operation uses what is installed when
/// it asks.
VELKCOMMON_EXPORT void installHost(HostServices services);

/// What is installed now. Never null; stays valid while held.
VELKCOMMON_EXPORT std::shared_ptr<const HostServices> host();

}  // namespace Velk
