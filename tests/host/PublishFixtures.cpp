#include "PublishFixtures.h"

#include "host/catalog/CatalogFile.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/SHA1.h>

namespace test {

VelkHost::Catalog catalogNamed(const std::string& item)
{
    VelkHost::Catalog catalog = smallCatalog();
    catalog.items[0].name = item;
    return catalog;
}

void writeCatalogFile(const fileString& path, const std::string& item)
{
    FileUtils::createDirectoriesWithPerm(path.parentPath());
    VelkHost::writeCatalog(catalogNamed(item), path);
}

void writePackedFile(const fileString& path, const std::string& item, const ZipEntries& companions)
{
    const TemporaryFolder folder;
    VelkHost::writeCatalog(catalogNamed(item), folder / U"a.calib");
    ZipEntries entries = {{path.stem().utf8() + ".calib", readFile(folder / U"a.calib")}};
    entries.insert(entries.end(), companions.begin(), companions.end());
    writeZipFile(path, entries);
}

void writeZipFile(const fileString& path, const ZipEntries& entries)
{
    FileUtils::createDirectoriesWithPerm(path.parentPath());
    writeZip(path, entries);
}

void writeFileDeep(const fileString& path, const std::string& bytes)
{
    FileUtils::createDirectoriesWithPerm(path.parentPath());
    writeFile(path, bytes);
}

std::string manufacturerData(const std::string& logo)
{
    return R"({"Version": "42", "Last_Modified": "20260301T140559", "Default_Text": "See the web site",
        "Manufacturer_7": {"Id": 7, "Last_Modified": "20260301T140559.012345", "Name": "Acme", "Logo": ")" +
           logo + R"(", "Deleted": false}})";
}

std::string hashOf(const fileString& path)
{
    return SHA1::fileContentsToSHA1Hex(path);
}

VelkHost::SiteTable PublishTest::table() const
{
    return VelkHost::readTable(site(), VelkHost::currentTable(site()));
}

std::string PublishTest::published(const std::string& name) const
{
    const VelkHost::SiteTable now = table();
    const auto library = now.libraries.find(name);
    if (library == now.libraries.end()) {
        ADD_FAILURE() << name << " is not published";
        return {};
    }
    return readFile(VelkHost::storedFile(site(), library->second.stored));
}

std::vector<std::string> PublishTest::problems() const
{
    std::vector<std::string> lines;
    try {
        publish();
        ADD_FAILURE() << "nothing was refused";
    } catch (const VelkHost::PublishError& error) {
        for (const VelkHost::PublishProblem& problem : error.problems()) {
            const std::string path = problem.path.utf8();
            lines.push_back((path == input().utf8() ? "." : path.substr(input().utf8().size() + 1)) + ": " +
                            problem.reason);
        }
    }
    return lines;
}

void PublishTest::writeEverything() const
{
    writeCatalogFile(input(U"core/M\u00F6bel 2.calib"), "Table");
    writeCatalogFile(input(U"core/~It's (a) $5 deal; 50=50, @home!.calib"), "Deal");
    writeZipFile(input(U"referenced/M\u00F6bel 2.zip"), {{"oak.png", "oak"}});
    writePackedFile(input(U"bonus/\u6905\u5B50.calibz"), "Chair", {{"oak.png", "oak"}});
    writePackedFile(input() / fileString("manufacturer/" + std::string(200, 'x') + ".calibz"), "Door", {});
    writeFileDeep(input(U"manufacturer_data.json"), manufacturerData("Gro\xC3\x9F"
                                                                     "e T\xC3\xBCr 1.png"));
    writeFileDeep(input(U"logos/Gro\u00DFe T\u00FCr 1.png"), png("door"));
    writeFileDeep(input(U"withdrawn.txt"), "Old {1}.calibz: Replaced by \"New\" for $5 \\ year, \xC3\xBC.\r\n\n");
}

}  // namespace test
