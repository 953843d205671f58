#pragma once

#include <VelkCommon/Files/WorkFolder.h>
#include <VelkCommon/HostServices.h>

#include <optional>

namespace VelkHost {

/// Gives the temporary files of this process a folder of their own, below the usual one, which is removed at the end:
/// two programs never meet there, and what a killed one has left is removed by the next. For programs that write.
class TemporaryFiles
{
public:
    /// What is done where no folder can be made.
    enum class Need {
        always,     ///< FileError is thrown
        ifPossible  ///< the services keep their own folder, for a program that can do something without it
    };
    /// Installs the services with such a folder.
    explicit TemporaryFiles(Velk::HostServices services, Need need = Need::always);
    /// The same with a folder in `parent`, for files that will be moved there. Throws FileError where none can be made.
    TemporaryFiles(Velk::HostServices services, const fileString& parent);
    /// Installs the services as they were given.
    ~TemporaryFiles();
    TemporaryFiles(const TemporaryFiles&) = delete;
    TemporaryFiles& operator=(const TemporaryFiles&) = delete;

    /// The folder for temporary files.
    fileString path() const;

private:
    void useFolderIn(const fileString& parent, Need need);

    std::optional<Velk::HostServices> services_;
    std::optional<WorkFolder> folder_;
};

}  // namespace VelkHost
