#include "host/fixtures/PublishFixtures.h"

#include "host/service/SelfSigned.h"
#include "host/service/Site.h"
#include "host/service/SiteService.h"
#include "support/Processes.h"

#include <filesystem>

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

namespace fs = std::filesystem;

namespace {

/// Folders that a service cannot use, for reasons that only some systems have.
class ServiceFolders : public test::PublishTest
{
protected:
    fs::path makeTls(fs::perms rights) const
    {
        const fs::path path = (folder() / U"tls").utf8();
        fs::create_directory(path);
        fs::permissions(path, rights);
        return path;
    }

    std::string whyNoCertificate() const
    {
        return test::reasonOf([&] { VelkHost::selfSignedCertificate(folder() / U"tls"); });
    }

    /// What an ordinary user is told who is to serve the site.
    void expectReason(const std::string& reason) const
    {
        test::asOrdinaryUser([&] {
            VelkHost::ServiceOptions options;
            options.site = site();
            EXPECT_EQ(test::reasonOf([&] { VelkHost::SiteService{options}; }), reason);
        });
    }
};

TEST_F(ServiceFolders, ForACertificateAreClosedToOthers)
{
    const fs::path path = makeTls(fs::perms(0755));
    EXPECT_THAT(whyNoCertificate(), AllOf(StartsWith("is open to other users"), HasSubstr("chmod 700")));
    EXPECT_TRUE(fs::is_empty(path));
    fs::permissions(path, fs::perms(0700));
    EXPECT_NO_THROW(VelkHost::selfSignedCertificate(folder() / U"tls"));
}

TEST_F(ServiceFolders, ForACertificateAreFolders)
{
    test::writeFile(folder() / U"tls", "a file");
    EXPECT_THAT(whyNoCertificate(), StartsWith("is not a folder; name one that is not there yet"));
}

TEST_F(ServiceFolders, ForACertificateStandInAFolder)
{
    EXPECT_THAT(test::reasonOf([&] { VelkHost::selfSignedCertificate(folder() / U"none/tls"); }),
                StartsWith("cannot be made; the folder above it must be there"));
}

TEST_F(ServiceFolders, ThatCannotBeReadAreNotTakenForEmptyOnes)
{
    test::writeCatalogFile(input(U"core/a.calib"), "A");
    publish();
    fs::permissions(folder().utf8(), fs::perms(0755));
    for (const unsigned rights : {0700U, 0744U}) {
        fs::permissions(site().utf8(), fs::perms(rights));
        expectReason("cannot be read; this user needs the right to list and to search it");
    }
}

TEST_F(ServiceFolders, HaveNoFilesThatCannotBeRead)
{
    test::writeCatalogFile(input(U"core/a.calib"), "A");
    test::writeFileDeep(input(U"logos/a.png"), "logo");
    test::writePackedFile(input(U"bonus/b.calibz"), "B", {});
    fs::permissions(folder().utf8(), fs::perms(0777));
    for (const char32_t* const name : {U"logos/a.png", U"core/a.calib", U"bonus/b.calibz"})
        fs::permissions(input(name).utf8(), fs::perms(0));
    test::asOrdinaryUser([&] {
        EXPECT_THAT(problems(),
                    testing::UnorderedElementsAre("logos/a.png: cannot be read", "core/a.calib: cannot be read",
                                                  "bonus/b.calibz: cannot be read"));
        EXPECT_FALSE(site().pathExists()) << "nothing is published without a tag";
    });
}

TEST_F(ServiceFolders, OfLogosAreNoLinks)
{
    test::writeFileDeep(input(U"logos/doors/a.png"), "logo");
    fs::create_symlink((input(U"logos")).utf8(), input(U"logos/doors/again").utf8());
    fs::create_symlink("doors", input(U"logos/also").utf8());
    EXPECT_THAT(problems(), testing::UnorderedElementsAre(StartsWith("logos/also: is a link to a folder"),
                                                          StartsWith("logos/doors/again: is a link to a folder")));
}

}  // namespace
