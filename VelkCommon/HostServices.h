#pragma once

/// @file
/// The one place where a host supplies what the library needs from it. Everything has a safe and useful
/// default, so a host fills in what it has and installs it once at start-up:
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

/// The well-known folders. An empty path stands for the default: a folder "velk/..." below the place where
/// the system keeps the user's data ($XDG_DATA_HOME or ~/.local/share; %LOCALAPPDATA% on Windows), and for
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

/// The editions of the product. For each of them the content service has a list of the core catalogs, in a
/// file whose name is the edition's word followed by "_Core_Content_Index.txt".
struct HostEditions
{
    /// The words that name the editions, in UTF-8. Each must be usable in a file name.
    std::array<std::string, 10> words = {"Standard",  "Professional", "Premium", "Enterprise", "Interior",
                                         "Landscape", "Education",    "Student", "Home",       "Trial"};
    std::size_t running = 0;  ///< the index of the running edition; 0 is used when it is out of range
};

/// How numbers are written for users.
struct NumberFormat
{
    std::string thousandsSeparator = ",";  ///< between groups of three digits, UTF-8; may be empty
    std::string decimalPoint = ".";        ///< UTF-8
};

/// A numbered preference with its value at start-up.
struct HostPreference
{
    std::size_t number = 0;   ///< see PreferenceNumbers.h for the numbers in use
    std::string description;  ///< names the preference in messages; UTF-8
    std::any value;           ///< its type is the one that the preference is read and written as
};

/// One failed assertion. The texts are valid during the call only.
struct AssertionReport
{
    const char* sourceFile = "";  ///< the file that holds the assertion
    std::size_t line = 0;         ///< its line there, counted from 1
    long kind = 0;                ///< -4 for every assertion of the library itself
    const char* expression = "";  ///< what should have been true, or what is wrong
};

/// What a host supplies. The functions may be called from any thread and by several threads at once. They
/// must not throw; a call that throws nevertheless is treated as if the function were absent.
struct HostServices
{
    /// Where the library's files are. Default: see HostFolders.
    HostFolders folders;

    /// A PEM file with the certificates of the authorities that servers are verified against, in place of the
    /// system's. Empty: the system's are used. If the file cannot be read, every HTTPS transfer fails.
    fileString certificateFile;

    /// The translation of a literal into the user's language; empty result or absent: the literal.
    std::function<std::u32string(std::u32string_view literal)> translate;

    /// The numbered text in the user's language; no result or absent: the built-in English text.
    std::function<std::optional<std::u32string>(unsigned int id)> resourceString;

    /// Default: ten common words, the first of which ("Standard") runs.
    HostEditions editions;

    /// Default: "1,234.5".
    NumberFormat numberFormat;

    /// Initial values, which replace those in the store. Preferences that the library uses but that are not
    /// listed here get the defaults given in PreferenceNumbers.h.
    std::vector<HostPreference> preferences;

    /// Called after every successful write of a preference, so that the host can save it. Absent:
    /// preferences last as long as the process.
    std::function<void(std::size_t number, const std::any& value)> preferenceChanged;

    /// Shows a message and returns the button pressed. Absent: the message goes to standard error, and the
    /// answer is `Ok`.
    std::function<error::Button(const error::Message& message)> showMessage;

    /// Whether assertions are reported. Absent: they are.
    std::function<bool()> assertionReportsEnabled;

    /// Reports an assertion; true asks for a break into an attached debugger. Absent: the report goes to
    /// standard error, and no break is asked for.
    std::function<bool(const AssertionReport& report)> reportAssertion;

    /// Called when files were added to a folder. Absent: nothing happens.
    std::function<void(const fileString& folder)> fileSearchReset;

    /// The image with the given resource name. A null image or absent: ResourceHandler has no such image.
    std::function<QImage(std::string_view name)> loadImage;

    /// The application object, which must outlive the host's use of the library. Null: a default one named
    /// "velk".
    applicationManager* application = nullptr;
};

/// Installs the host's services in place of those installed before. Call it at start-up, before other
/// threads use the library. Later calls are safe; an operation uses the services that are installed at
/// the moment when it needs them.
VELKCOMMON_EXPORT void installHost(HostServices services);

/// The services that are installed now. Never null; they stay valid for as long as the pointer is held.
VELKCOMMON_EXPORT std::shared_ptr<const HostServices> host();

}  // namespace Velk
