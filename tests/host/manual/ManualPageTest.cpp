#include "host/manual/ManualPage.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using testing::HasSubstr;
using testing::Not;
using VelkHost::ArgumentDescription;
using VelkHost::CommandDescription;
using VelkHost::manualPage;

ArgumentDescription option(const std::string& name, const std::string& value, const std::string& help)
{
    ArgumentDescription described;
    described.names = {name};
    described.value = value;
    described.help = help;
    described.values = value.empty() ? 0 : 1;
    return described;
}

CommandDescription thing()
{
    CommandDescription program;
    program.name = "thing";
    program.summary = "thing - does things";
    program.options = {option("--help", "", "Print this")};
    return program;
}

TEST(ManualPage, BeginsWithNameAndVersion)
{
    EXPECT_THAT(
        manualPage(thing(), "1.2.3", {}),
        testing::StartsWith(".TH THING 1 \"\" \"thing 1.2.3\" \"User Commands\"\n"
                            ".SH NAME\nthing \\- does things\n.SH SYNOPSIS\n\\fBthing\\fR [\\fIOPTION\\fR...]\n"));
}

TEST(ManualPage, TellsOptionsOfCommandsInCommands)
{
    CommandDescription inner;
    inner.name = "build";
    inner.summary = "Build it";
    inner.options = {option("--help", "", "Print this"), option("--output", "FILE", "Where to")};
    inner.options.back().required = true;
    CommandDescription outer;
    outer.name = "catalog";
    outer.commands = {inner};
    CommandDescription program = thing();
    program.commands = {outer};
    const std::string page = manualPage(program, "1", {});
    EXPECT_THAT(page,
                HasSubstr(".SS thing catalog build\n\\fBthing catalog build\\fR \\fB\\-\\-output\\fR \\fIFILE\\fR "
                          "[\\fIOPTION\\fR...]\n.PP\nBuild it.\n"));
    EXPECT_THAT(page, HasSubstr(".TP\n\\fB\\-\\-output\\fR \\fIFILE\\fR\nWhere to\n"));
    EXPECT_EQ(page.find("Print this"), page.rfind("Print this")) << "it is the same for every command";
}

TEST(ManualPage, TellsChoicesThatTheHelpHasNotTold)
{
    CommandDescription program = thing();
    program.options = {option("--format", "FORMAT", "table or json"), option("--language", "CODE", "Of the window")};
    program.options[0].choices = {"table", "json"};
    program.options[1].choices = {"de", "fr"};
    const std::string page = manualPage(program, "1", {});
    EXPECT_THAT(page, HasSubstr("\ntable or json\n"));
    EXPECT_THAT(page, HasSubstr("\nOf the window (\\fBde\\fR, \\fBfr\\fR)\n"));
}

TEST(ManualPage, ShowsTextsAsTheyAre)
{
    CommandDescription program = thing();
    program.notes = "Files\n.calib and 'c:\\x'\n\nExamples:\n  thing 'a -b' \"c\"\n  .\n\nThe end.";
    const std::string page = manualPage(program, "1", {});
    EXPECT_THAT(page, HasSubstr(".PP\nFiles\n\\&.calib and \\(aqc:\\ex\\(aq\n.PP\nExamples:\n.br\n.EX\n"
                                "  thing \\(aqa \\-b\\(aq \\(dqc\\(dq\n  .\n.EE\n.PP\nThe end.\n"));
}

TEST(ManualPage, NamesWhatElseToSee)
{
    EXPECT_THAT(manualPage(thing(), "1", {}), Not(HasSubstr("SEE ALSO")));
    EXPECT_THAT(manualPage(thing(), "1", {"a", "b"}), testing::EndsWith(".SH SEE ALSO\n\\fBa\\fR(1),\n\\fBb\\fR(1)\n"));
}

}  // namespace
