#pragma once

#include "Fixtures.h"

#include "host/service/Publisher.h"
#include "host/service/Site.h"

#include <string>

/// @file
/// Publishers' folders as tests make them.

namespace test {

/// A catalog with one item of that name; different names make different files, equal ones equal files.
VelkHost::Catalog catalogNamed(const std::string& item);

/// Writes a catalog, making its folder.
void writeCatalogFile(const fileString& path, const std::string& item);

/// Writes a packed library with a catalog and further entries, making its folder.
void writePackedFile(const fileString& path, const std::string& item, const ZipEntries& companions);

/// Writes a zip archive, making its folder.
void writeZipFile(const fileString& path, const ZipEntries& entries);

/// Writes a file, making its folder.
void writeFileDeep(const fileString& path, const std::string& bytes);

/// The manufacturers' data file with one card that names a logo.
std::string manufacturerData(const std::string& logo);

/// The SHA-1 of a file, for sources that meet another name SHA1.
std::string hashOf(const fileString& path);

/// A base for tests that publish: a folder and a site.
class PublishTest : public TestHost
{
protected:
    fileString input() const { return folder() / U"input"; }
    fileString input(const std::u32string& path) const { return input() / path; }
    fileString site() const { return folder() / U"site"; }

    VelkHost::PublishReport publish() const { return VelkHost::publish(input(), site()); }
    /// The table in force.
    VelkHost::SiteTable table() const;
    /// The bytes of a library in force.
    std::string published(const std::string& name) const;
    /// "path: reason" of each problem, the path within the input folder; fails the test when there is none.
    std::vector<std::string> problems() const;

    /// Fills the input with something of everything, under names as people give them.
    void writeEverything() const;
};

}  // namespace test
