#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <httplib.h>

/// @file
/// What the content service answers: one table for every server that serves a site.

namespace test {

using RequestHeaders = std::vector<std::pair<std::string, std::string>>;

struct ServiceRequest
{
    const char* name;
    std::string method;
    std::string target;  ///< as on the wire
    RequestHeaders headers;
    int status = 200;
    std::string headersExpected;  ///< the answer's headers that matter, see describeHeaders()
    std::string body;             ///< of a GET
};

/// The files of PublishTest::writeEverything() as a table of requests with their answers.
struct ServedSite
{
    std::string core, coreTag;      ///< the core catalog "Möbel 2.calib"
    std::string packed, packedTag;  ///< the bonus library
    std::string index;
    std::string manufacturers, logo;
};
std::vector<ServiceRequest> serviceRequests(const ServedSite& site);

/// The headers of an answer that clients and caches look at, without those that differ for good reasons.
std::string describeHeaders(const httplib::Response& response);

/// Sends each request over one connection and compares the answers.
void expectAnswers(httplib::Client& client, const std::vector<ServiceRequest>& requests);

}  // namespace test
