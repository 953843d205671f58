#include "host/fixtures/ExitCodes.h"
#include "host/fixtures/Fixtures.h"

#include "host/catalog/CatalogFile.h"
#include "support/Processes.h"

#include <algorithm>
#include <cstdlib>
#include <regex>
#include <sstream>

#include <pty.h>
#include <unistd.h>

using testing::HasSubstr;
using testing::Not;

namespace {

struct TerminalRun
{
    int exitCode = -1;
    std::string screen;  // everything that the terminal got, including styles
};

/// Runs the velk program as at a terminal of a certain width, in a folder of small libraries.
class VelkAtATerminal : public test::TestHost
{
protected:
    VelkAtATerminal() { VelkHost::writeCatalog(test::smallCatalog(), folder() / U"a.calib"); }

    TerminalRun velk(const std::string& arguments, unsigned short columns = 200,
                     const std::vector<std::string>& environment = {"TERM=xterm"}) const
    {
        const std::string command = "cd '" + folder().utf8() + "' && exec '" VELK_PROGRAM "' " + arguments;
        winsize size{};
        size.ws_row = 24;
        size.ws_col = columns;
        int terminal = -1;
        const pid_t child = ::forkpty(&terminal, nullptr, nullptr, &size);
        if (child == 0)
            runShell(command, environment);
        TerminalRun run;
        run.screen = test::readToEnd(terminal);
        ::close(terminal);
        run.exitCode = test::endOf(child);
        return run;
    }

private:
    [[noreturn]] static void runShell(const std::string& command, const std::vector<std::string>& environment)
    {
        ::unsetenv("NO_COLOR");
        for (const std::string& variable : environment)
            ::putenv(const_cast<char*>(variable.c_str()));
        ::execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
};

/// The characters of the widest line of the table, which ends at an empty line or at the count of hits.
std::size_t tableWidth(const std::string& screen)
{
    const std::string plain = std::regex_replace(screen, std::regex("\x1b\\[[0-9;]*m|\r"), "");
    std::istringstream lines(plain);
    std::size_t widest = 0;
    for (std::string line; std::getline(lines, line) && line.find(" hits. ") == std::string::npos;) {
        const auto isFirstByte = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; };
        widest = std::max(widest, static_cast<std::size_t>(std::count_if(line.begin(), line.end(), isFirstByte)));
    }
    return widest;
}

TEST_F(VelkAtATerminal, HighlightsWhatMatched)
{
    const TerminalRun run = velk("search chair -l a.calib");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(std::regex_search(run.screen, std::regex("\x1b\\[[0-9;]+m[Cc]hair\x1b\\[0?m"))) << run.screen;
}

TEST_F(VelkAtATerminal, LeavesStylesOutWhereTheyAreNotWanted)
{
    for (const std::vector<std::string>& environment :
         {std::vector<std::string>{"TERM=xterm", "NO_COLOR=1"}, {"TERM=dumb"}}) {
        const TerminalRun run = velk("search chair -l a.calib", 200, environment);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_THAT(run.screen, HasSubstr("hair"));
        EXPECT_THAT(run.screen, Not(HasSubstr("\x1b"))) << environment.back();
    }
}

TEST_F(VelkAtATerminal, FitsTheTableIntoTheWidth)
{
    const std::string wide = velk("search chair -l a.calib").screen;
    ASSERT_GT(tableWidth(wide), 80U) << "the table would fit anyway";
    EXPECT_LE(tableWidth(velk("search chair -l a.calib", 80).screen), 80U);
}

TEST_F(VelkAtATerminal, EndsInSilenceWhenTheReaderHasEnough)
{
    const TerminalRun run = velk("search chair -l a.calib --format json | head -c 1; echo ' ended'");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.screen, HasSubstr(" ended"));
    EXPECT_THAT(run.screen, Not(HasSubstr("velk:")));
}

TEST_F(VelkAtATerminal, SaysThatAFolderTakesNoFile)
{
    const TerminalRun run = velk("catalog sample -o /proc/sample.calib");  // closed to the superuser too
    EXPECT_EQ(run.exitCode, test::exitCode::buildFailed);
    EXPECT_THAT(run.screen, HasSubstr("velk: /proc/sample.calib: cannot be written"));
}

TEST_F(VelkAtATerminal, ShowsHowFarAnUnpackIs)
{
    test::writeZip(folder() / U"packed.calibz", {{"picture.png", "x"}, {"packed.calib", "database"}});
    const TerminalRun run = velk("unpack packed.calibz -o out");
    EXPECT_EQ(run.exitCode, 0) << run.screen;
    EXPECT_THAT(run.screen, HasSubstr("[####################] 100 of 100"));
    EXPECT_THAT(run.screen, HasSubstr("packed.zip: 0 KB, 1 entries"));
    EXPECT_THAT(velk("unpack packed.calibz -o out", 200, {"TERM=dumb"}).screen, Not(HasSubstr("100 of 100")));
}

}  // namespace
