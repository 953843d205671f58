// The completions as the shells take them.
#include "host/manual/Completions.h"
#include "host/manual/ProgramDescription.h"
#include "support/QtProcesses.h"
#include "support/TestHost.h"

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>

#include <QProcess>
#include <QStandardPaths>
#include <QStringList>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using Words = std::vector<std::string>;

const std::string madeFiles = VELK_MANUAL_FILES;

bool isThere(const QString& shell)
{
    return !QStandardPaths::findExecutable(shell).isEmpty();
}

/// A folder with files of each kind, in which shells run.
class Completion : public test::TestHost
{
protected:
    Completion()
    {
        std::filesystem::create_directories(folder().utf8() + "/here/textures");
        for (const char32_t* const name : {U"house.calib", U"house.calibz", U"notes.txt"})
            test::writeFile(folder() / U"here" / name, "");
        test::writeFile(folder() / U"here" / U"textures" / U"oak.png", "");
    }

    /// The lines that a shell writes.
    Words lines(const QString& shell, const QStringList& arguments)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), QString::fromStdString(folder().utf8()));
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(QString::fromStdString((folder() / U"here").utf8()));
        process.start(shell, arguments);
        test::waitForEnd(process);
        EXPECT_EQ(process.exitCode(), 0);
        EXPECT_EQ(process.readAllStandardError().toStdString(), "");
        std::istringstream output(process.readAllStandardOutput().toStdString());
        Words all;
        for (std::string line; std::getline(output, line);)
            all.push_back(line);
        return all;
    }

    /// What bash offers for the last of these words. Its own completion functions are not asked, which may be missing.
    Words bash(const Words& words, const std::string& files = madeFiles)
    {
        QStringList arguments = {
            QStringLiteral("--norc"), QStringLiteral("-c"),
            QStringLiteral("source \"$1\" && shift && COMP_WORDS=(\"$@\") COMP_CWORD=$(($# - 1)) &&"
                           "registered=($(complete -p \"$1\")) && \"${registered[2]}\" && "
                           "printf '%s\\n' \"${COMPREPLY[@]}\""),
            QStringLiteral("bash"), QString::fromStdString(files + "/" + words.front() + ".bash")};
        for (const std::string& word : words)
            arguments << QString::fromStdString(word);
        Words offered = lines(QStringLiteral("bash"), arguments);
        std::sort(offered.begin(), offered.end());
        return offered == Words{""} ? Words() : offered;
    }

    /// What fish offers for this line, without descriptions.
    Words fish(const std::string& line, const std::string& files = madeFiles)
    {
        const std::string program = line.substr(0, line.find(' '));
        Words offered = lines(QStringLiteral("fish"),
                              {QStringLiteral("--no-config"), QStringLiteral("-c"),
                               QStringLiteral("source $argv[1]; complete -C $argv[2]"),
                               QString::fromStdString(files + "/" + program + ".fish"), QString::fromStdString(line)});
        for (std::string& word : offered)
            word = word.substr(0, word.find('\t'));
        return offered;
    }
};

struct Row
{
    const char* name;
    Words typed;
    Words offered;
};

class BashCompletion : public Completion, public testing::WithParamInterface<Row>
{};

TEST_P(BashCompletion, OffersWhatCanStandThere)
{
    EXPECT_THAT(bash(GetParam().typed), ElementsAreArray(GetParam().offered));
}

INSTANTIATE_TEST_SUITE_P(
    , BashCompletion,
    testing::Values(Row{"Command", {"velk", "ca"}, {"catalog"}},
                    Row{"CommandOfACommand", {"velk", "catalog", ""}, {"build", "pack", "sample"}},
                    Row{"NothingBehindAMistake", {"velk", "cat", ""}, {}},
                    Row{"OptionOfTheProgram", {"velk", "--v"}, {"--version"}},
                    Row{"OptionOfACommand", {"velk", "search", "--fo"}, {"--format"}},
                    Row{"OptionBehindAValue", {"velk", "search", "-l", "search", "--ki"}, {"--kind"}},
                    Row{"Choices", {"velk", "search", "--format", ""}, {"json", "table"}},
                    Row{"ChoicesBehindASign", {"velk", "search", "--format", "="}, {"json", "table"}},
                    Row{"ChoiceBehindASign", {"velk", "search", "--format", "=", "j"}, {"json"}},
                    Row{"Catalogs", {"velk", "search", "-l", ""}, {"house.calib", "textures"}},
                    Row{"CatalogsByTheLongName", {"velk", "search", "--library", "h"}, {"house.calib"}},
                    Row{"PackedLibraries", {"velk", "unpack", ""}, {"house.calibz", "textures"}},
                    Row{"FilesInAFolder", {"velk", "filter", "merge", "textures/"}, {"textures/oak.png"}},
                    Row{"Folders", {"velk", "publish", "-o", ""}, {"textures"}},
                    Row{"AnyFile", {"velk", "filter", "merge", "n"}, {"notes.txt"}},
                    Row{"SecondWordOfAValue", {"velk", "serve", "--tls", "cert.pem", "n"}, {"notes.txt"}},
                    Row{"PlaceBehindAnOption", {"velk", "catalog", "pack", "-o", "x", ""}, {"house.calib", "textures"}},
                    Row{"PlaceThatIsTaken", {"velk", "catalog", "pack", "house.calib", ""}, {}},
                    Row{"FreeText", {"velk", "search", "--id", ""}, {}},
                    Row{"OptionsOfTheWindow", {"velk-browser", "--s"}, {"--service", "--site"}},
                    Row{"FilesOfTheWindow", {"velk-browser", "x.calib", "h"}, {"house.calib", "house.calibz"}},
                    Row{"LanguagesOfTheWindow", {"velk-browser", "--language", ""}, {"de", "en", "fr"}}),
    [](const auto& row) { return std::string(row.param.name); });

/// A program without commands that takes any number of files.
VelkHost::CommandDescription viewer()
{
    CLI::App app("View files", "viewer");
    std::string home;
    std::vector<std::string> files;
    app.add_option("--home", home, "The folder")->type_name("DIR");
    app.add_option("FILE", files, "A packed library (.calibz)");
    return VelkHost::describe(app);
}

TEST_F(Completion, OfBashOffersFilesAtEveryPlace)
{
    test::writeFile(folder() / U"viewer.bash", bashCompletion(viewer()));
    const std::string files = folder().utf8();
    EXPECT_THAT(bash({"viewer", ""}, files), ElementsAre("house.calibz", "textures"));
    EXPECT_THAT(bash({"viewer", "--home", "x", "y", ""}, files), ElementsAre("house.calibz", "textures"));
    EXPECT_THAT(bash({"viewer", "x", "--ho"}, files), ElementsAre("--home"));
    EXPECT_THAT(bash({"viewer", "x", "--home", ""}, files), ElementsAre("textures"));
}

TEST_F(Completion, OfFishOffersFilesAtEveryPlace)
{
    if (!isThere(QStringLiteral("fish")))
        GTEST_SKIP() << "there is no fish";
    test::writeFile(folder() / U"viewer.fish", fishCompletion(viewer()));
    const std::string files = folder().utf8();
    EXPECT_THAT(fish("viewer --home x y ", files).at(0), "house.calibz");
    EXPECT_THAT(fish("viewer x --ho", files), ElementsAre("--home"));
}

TEST_F(Completion, OfZshIsUnderstood)
{
    if (!isThere(QStringLiteral("zsh")))
        GTEST_SKIP() << "there is no zsh";
    for (const char* const file : {"/_velk", "/_velk-browser"})
        EXPECT_THAT(lines(QStringLiteral("zsh"),
                          {QStringLiteral("-f"), QStringLiteral("-n"), QString::fromStdString(madeFiles + file)}),
                    IsEmpty());
}

TEST_F(Completion, OfFishOffersWhatCanStandThere)
{
    if (!isThere(QStringLiteral("fish")))
        GTEST_SKIP() << "there is no fish";
    EXPECT_THAT(fish("velk ca"), ElementsAre("catalog"));
    EXPECT_THAT(fish("velk catalog "), ElementsAre("build", "pack", "sample"));
    EXPECT_THAT(fish("velk search --fo"), ElementsAre("--format"));
    EXPECT_THAT(fish("velk search --format "), ElementsAre("json", "table"));
    EXPECT_THAT(fish("velk search -l "), testing::Contains("house.calib"));
    EXPECT_THAT(fish("velk unpack ").at(0), "house.calibz");
    EXPECT_THAT(fish("velk publish -o "), ElementsAre("textures/"));
    EXPECT_THAT(fish("velk-browser --language "), ElementsAre("de", "en", "fr"));
}

}  // namespace
