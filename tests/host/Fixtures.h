#pragma once

#include "host/catalog/Catalog.h"
#include "host/catalog/CatalogError.h"
#include "support/TestHost.h"

#include <QJsonObject>

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

namespace test {

/// Entries of a zip archive: name and bytes.
using ZipEntries = std::vector<std::pair<std::string, std::string>>;

/// Writes a zip archive.
void writeZip(const fileString& path, const ZipEntries& entries);

/// The bytes that make a file a PNG file, and `rest`.
std::string png(const std::string& rest);

/// A catalog with nested folders, odd characters, thumbnails and files.
VelkHost::Catalog smallCatalog();

/// Runs SQL on a database file, which is made when missing; fails the test on an error.
void runSql(const fileString& path, const std::string& sql);

/// The sentence of the CatalogError that `call` throws; fails the test when it throws none.
template <typename Call>
std::string reasonOf(Call call);

/// What a run of the velk program left behind.
struct ProgramRun
{
    int exitCode = -1;
    bool crashed = false;
    std::string output;
    std::string errors;

    /// The output as a JSON object; empty when it is none.
    QJsonObject json() const;
};

/// Runs the velk program in `folder`, which also takes the place of the user's data folder. Its output goes
/// to the file `outputFile` when that is not empty.
ProgramRun runProgram(const fileString& folder, const std::vector<std::string>& arguments,
                      const std::string& outputFile = {});

}  // namespace test

template <typename Call>
std::string test::reasonOf(Call call)
{
    try {
        call();
    } catch (const VelkHost::CatalogError& error) {
        return error.reason();
    }
    ADD_FAILURE() << "nothing was refused";
    return {};
}
