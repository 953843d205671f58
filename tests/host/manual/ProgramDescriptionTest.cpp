#include "host/manual/ProgramDescription.h"

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VelkHost::ArgumentDescription;
using VelkHost::CommandDescription;
using VelkHost::describe;
using VelkHost::ValueKind;

/// The last one that was declared: before it is the parser's own "--help".
ArgumentDescription lastOption(const CLI::App& app)
{
    return describe(app).options.back();
}

TEST(ProgramDescription, HasWhatTheParserSays)
{
    CLI::App app("does things", "thing");
    app.footer("Examples:\n  thing do");
    app.add_subcommand("do", "Do one")->add_subcommand("twice", "Do it again");
    const CommandDescription program = describe(app);
    EXPECT_EQ(program.name, "thing");
    EXPECT_EQ(program.summary, "does things");
    EXPECT_EQ(program.notes, "Examples:\n  thing do");
    ASSERT_EQ(program.commands.size(), 1U);
    EXPECT_EQ(program.commands[0].name, "do");
    ASSERT_EQ(program.commands[0].commands.size(), 1U);
    EXPECT_EQ(program.commands[0].commands[0].summary, "Do it again");
}

TEST(ProgramDescription, AFlagHasNoValue)
{
    CLI::App app;
    bool quiet = false;
    app.add_flag("-q,--quiet", quiet, "Say\nnothing");
    const ArgumentDescription flag = lastOption(app);
    EXPECT_THAT(flag.names, ElementsAre("-q", "--quiet"));
    EXPECT_EQ(flag.value, "");
    EXPECT_EQ(flag.help, "Say nothing");
    EXPECT_EQ(flag.values, 0);
    EXPECT_EQ(flag.kind, ValueKind::None);
    EXPECT_FALSE(flag.repeated);
}

TEST(ProgramDescription, AnOptionMayBeRequiredOrRepeated)
{
    CLI::App app;
    std::string one;
    std::vector<std::string> several;
    app.add_option("--one", one, "One")->required()->type_name("ID");
    const ArgumentDescription required = lastOption(app);
    EXPECT_TRUE(required.required);
    EXPECT_FALSE(required.repeated);
    EXPECT_EQ(required.values, 1);
    app.add_option("--several", several, "Several")->allow_extra_args(false);
    const ArgumentDescription repeated = lastOption(app);
    EXPECT_FALSE(repeated.required);
    EXPECT_TRUE(repeated.repeated);
    EXPECT_EQ(repeated.values, 1);
    EXPECT_EQ(repeated.value, "TEXT");
}

TEST(ProgramDescription, AnOptionMayTakeTwoWords)
{
    CLI::App app;
    std::vector<std::string> both;
    app.add_option("--tls", both, "Files")->expected(2)->type_name("CERT KEY");
    EXPECT_EQ(lastOption(app).values, 2);
    EXPECT_EQ(lastOption(app).kind, ValueKind::File);
    EXPECT_FALSE(lastOption(app).repeated);
}

TEST(ProgramDescription, HasTheChoices)
{
    CLI::App app;
    std::string format;
    app.add_option("--format", format, "How")->check(CLI::IsMember({"table", "json"}))->type_name("FORMAT");
    EXPECT_EQ(lastOption(app).value, "FORMAT");
    EXPECT_THAT(lastOption(app).choices, ElementsAre("table", "json"));
}

TEST(ProgramDescription, PlacesAreApartFromOptions)
{
    CLI::App app;
    std::vector<std::string> words;
    app.add_option("TEXT", words, "What to look for");
    const CommandDescription program = describe(app);
    ASSERT_EQ(program.places.size(), 1U);
    EXPECT_EQ(program.places[0].value, "TEXT");
    EXPECT_THAT(program.places[0].names, IsEmpty());
    EXPECT_TRUE(program.places[0].repeated);
}

struct ExtensionRow
{
    const char* name;
    const char* around;   ///< the summary of the command around
    const char* summary;  ///< of the command
    const char* help;     ///< of the option
    std::vector<std::string> extensions;
};

class Extensions : public testing::TestWithParam<ExtensionRow>
{};

TEST_P(Extensions, AreThoseThatTheHelpNames)
{
    CLI::App app(GetParam().around, "thing");
    CLI::App* const command = app.add_subcommand("command", GetParam().summary);
    std::string file;
    command->add_option("--file", file, GetParam().help)->type_name("FILE");
    EXPECT_EQ(describe(app).commands.at(0).options.back().extensions, GetParam().extensions);
}

INSTANTIATE_TEST_SUITE_P(ProgramDescription, Extensions,
                         testing::Values(ExtensionRow{"Own", "of .a", "of .b", "A .c file", {"c"}},
                                         ExtensionRow{
                                             "Several", "", "", "Scenes (.sh3f) or tables (.csv)", {"sh3f", "csv"}},
                                         ExtensionRow{"OfTheCommand", "of .a", "of .b", "A file", {"b"}},
                                         ExtensionRow{"OfTheCommandAround", "of .a", "It works.", "A file", {"a"}},
                                         ExtensionRow{"DotsWithinWords", "", "", "127.0.0.1 or b.c. Or not", {}}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ProgramDescription, ANewWordForAValueIsNotForgotten)
{
    CLI::App app;
    std::string value;
    app.add_option("--new", value, "New")->type_name("GADGET");
    EXPECT_THROW(describe(app), std::logic_error);
}

}  // namespace
