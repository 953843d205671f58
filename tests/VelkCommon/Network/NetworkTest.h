#pragma once

#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Network/detail/TransferLimits.h>

#include "support/ScriptedServer.h"
#include "support/SmallDisk.h"
#include "support/TestHost.h"
#include "support/TransferCodes.h"

#include <QByteArray>

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

namespace test {

/// The result of a download.
struct Outcome
{
    bool succeeded = false;
    std::string reason;
    unsigned int code = 0;
};

/// A host and a server, without a proxy; the usual limits are restored after each test.
class NetworkTest : public TestHost
{
protected:
    NetworkTest()
    {
        for (const char* const name :
             {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY", "no_proxy", "NO_PROXY"})
            qunsetenv(name);
    }
    ~NetworkTest() override { Velk::detail::setTransferLimits({}); }

    /// Changes the limits for this test.
    template <typename Change>
    void limit(Change change)
    {
        Velk::detail::TransferLimits limits;
        change(limits);
        Velk::detail::setTransferLimits(limits);
    }

    fileString target() const { return folder() / U"target"; }

    /// The long form. The outputs are filled beforehand, so that the test notices one that is not replaced.
    Outcome download(const std::string& url, const std::vector<std::string>& headers = {}, void* data = nullptr,
                     Curl::Progress progress = nullptr) const
    {
        Outcome outcome{false, "before", 99};
        outcome.succeeded =
            Curl::get().download_to_location(url, target(), headers, data, progress, outcome.reason, outcome.code);
        return outcome;
    }
    bool browse(const std::string& url, const std::vector<std::string>& headers = {})
    {
        body_ = "before";
        return Curl::get().browseURL(url, headers, body_, true, 0);
    }
    bool askHeader(const std::string& url, const std::vector<std::string>& headers = {})
    {
        header_ = "before";
        status_ = 99;
        return Curl::get().getURLHeader(url, headers, header_, status_);
    }
    /// The names in the test's folder that are not the well-known ones of the host.
    std::vector<std::string> strayFiles() const
    {
        const std::vector<std::string> known = {"bonus",      "core",     "manufacturer", "manufacturer-data",
                                                "referenced", "textures", "temp",         "user"};
        std::vector<std::string> names = listFolder(folder());
        std::erase_if(names, [&](const std::string& name) { return std::count(known.begin(), known.end(), name) > 0; });
        return names;
    }

    ScriptedServer server_;
    std::string body_;
    std::string header_;
    long status_ = 0;
};

}  // namespace test
