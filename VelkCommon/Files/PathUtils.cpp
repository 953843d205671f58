#include <VelkCommon/Files/PathUtils.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/detail/Folders.h>
#include <VelkCommon/Files/detail/RandomName.h>
#include <VelkCommon/HostServices.h>
#include <VelkCommon/Platform/FileSystem.h>
#include <VelkCommon/Platform/PathText.h>
#include <VelkCommon/Platform/UserFolders.h>
#include <VelkCommon/detail/NeverDestroyed.h>

#include <mutex>

namespace Platform = Velk::Platform;

namespace {

fileString withSeparator(const fileString& folder)
{
    const std::string& text = folder.utf8();
    if (!text.empty() && Platform::isSeparator(text.back()))
        return folder;
    return folder + fileString(std::string(1, Platform::separator));
}

// The host's folder, or the default one below the user's data.
fileString wellKnown(fileString Velk::HostFolders::*folder, const char32_t* defaultName)
{
    const auto host = Velk::host();
    const fileString& chosen = host->folders.*folder;
    if (!chosen.empty())
        return withSeparator(chosen);
    return withSeparator(fileString(Platform::userDataFolder()) / U"velk" / defaultName);
}

// The folder with the usual name may already belong to somebody else, innocently or not, because everybody can
// guess that name. Then a folder that nobody can guess is used for as long as the process runs.
fileString ownTemporaryFolder()
{
    const fileString shared = Platform::temporaryFolder();
    fileString usual = shared / fileString(Platform::userFolderName());
    if (Platform::createPrivateFolder(usual.utf8()))
        return usual;
    static std::mutex mutex;
    static Velk::detail::NeverDestroyed<fileString> name;
    fileString& unguessable = *name;
    const std::lock_guard lock(mutex);
    if (unguessable.empty() || !Platform::createPrivateFolder(unguessable.utf8()))
        unguessable = usual + fileString(std::string("-")) + fileString(Velk::detail::randomName());
    static_cast<void>(Platform::createPrivateFolder(unguessable.utf8()));
    return unguessable;
}

}  // namespace

const PathUtils& PathUtils::getObject()
{
    static const PathUtils object;
    return object;
}

fileString PathUtils::getUserDatabasePath() const
{
    return wellKnown(&Velk::HostFolders::userDatabase, U"user");
}

fileString PathUtils::getCoreLibraryDatabasePath() const
{
    return wellKnown(&Velk::HostFolders::coreLibraryDatabase, U"core");
}

fileString PathUtils::getBonusLibraryDatabasePath() const
{
    return wellKnown(&Velk::HostFolders::bonusLibraryDatabase, U"bonus");
}

fileString PathUtils::getManufacturerLibraryPath() const
{
    return wellKnown(&Velk::HostFolders::manufacturerLibrary, U"manufacturer");
}

fileString PathUtils::getManufacturerDataPath() const
{
    return wellKnown(&Velk::HostFolders::manufacturerData, U"manufacturer-data");
}

fileString PathUtils::getProprietaryLibraryReferencedFilesPath() const
{
    return wellKnown(&Velk::HostFolders::proprietaryLibraryReferencedFiles, U"referenced");
}

fileString PathUtils::getUserTexturePath() const
{
    return wellKnown(&Velk::HostFolders::userTexture, U"textures");
}

fileString PathUtils::getTempPath() const
{
    const fileString chosen = Velk::host()->folders.temp;
    if (chosen.empty())
        return withSeparator(ownTemporaryFolder());
    // A folder above that could not be looked at is there all the same.
    Velk::detail::createMissingFolders(chosen, [](const std::string& folder) {
        static_cast<void>(Platform::createPrivateFolder(folder));
        return true;
    });
    return withSeparator(chosen);
}
