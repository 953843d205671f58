#pragma once

#include "support/TestHost.h"

#include <QByteArray>
#include <QtGlobal>

namespace test {

/// While it lives, what programs keep of a user's session, such as sockets, lies in a folder of the test's own.
/// Programs that the test starts inherit it.
class RuntimeFolder
{
public:
    RuntimeFolder() { qputenv(variable, QByteArray::fromStdString(folder_.path().utf8())); }
    ~RuntimeFolder()
    {
        if (before_.isNull())
            qunsetenv(variable);
        else
            qputenv(variable, before_);
    }
    RuntimeFolder(const RuntimeFolder&) = delete;
    RuntimeFolder& operator=(const RuntimeFolder&) = delete;

    const fileString& path() const noexcept { return folder_.path(); }
    /// A name that no other test has.
    std::string freshName() const { return folder_.path().stemWithExtension().utf8(); }

private:
    static constexpr const char* variable = "XDG_RUNTIME_DIR";

    const QByteArray before_ = qgetenv(variable);
    TemporaryFolder folder_;
};

}  // namespace test
