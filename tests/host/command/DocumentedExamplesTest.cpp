#include "host/fixtures/ProgramRun.h"

#include "support/QtProcesses.h"

#include <gmock/gmock.h>

#include <QProcess>

#include <algorithm>
#include <sstream>

using testing::HasSubstr;

namespace {

using Words = std::vector<std::string>;

/// An example as a shell takes it: words between blanks, some in quotes. It ends where two blanks begin a comment.
Words wordsOf(const std::string& line)
{
    Words words;
    char quote = 0;
    bool open = false;
    for (std::size_t i = line.find_first_not_of(' '); i < line.size(); ++i) {
        const char c = line[i];
        if (quote == 0 && c == ' ') {
            if (i + 1 < line.size() && line[i + 1] == ' ')
                break;
            open = false;
        } else if (quote == 0 ? c == '\'' : c == quote) {
            quote = quote == 0 ? c : '\0';
        } else {
            if (!open)
                words.emplace_back();
            open = true;
            words.back() += c;
        }
    }
    return words;
}

/// The first examples of a page: its first lines that are indented, up to one that is not.
std::vector<Words> firstExamples(const std::string& page)
{
    std::vector<Words> examples;
    std::istringstream lines(page);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("  velk ") || line.starts_with("    velk "))
            examples.push_back(wordsOf(line));
        else if (!examples.empty())
            break;
    }
    return examples;
}

/// Types examples one after the other, in a folder that is empty at first.
class Examples : public test::TestHost
{
protected:
    ~Examples() override
    {
        if (service_.state() == QProcess::NotRunning)
            return;
        service_.kill();
        test::waitForEnd(service_);
    }

    void type(Words words)
    {
        SCOPED_TRACE(testing::PrintToString(words));
        ASSERT_EQ(words.front(), "velk");
        words.erase(words.begin());
        if (words.front() == "serve")
            return serve(words);
        for (std::string& word : words)
            if (word.starts_with("http://"))
                word = address_;
        const test::ProgramRun run = test::runProgram(folder(), words);
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        EXPECT_EQ(run.errors, "");
        EXPECT_NE(run.output, "");
    }

private:
    /// On a port that is free, in place of the documented one. What updates from it gets its address.
    void serve(Words words)
    {
        const auto port = std::find(words.begin(), words.end(), "--port");
        ASSERT_LT(port, words.end() - 1);
        EXPECT_EQ(port[1], "8080");
        port[1] = "0";
        QStringList arguments;
        for (const std::string& word : words)
            arguments << QString::fromStdString(word);
        service_.setWorkingDirectory(QString::fromStdString(folder().utf8()));
        service_.start(QStringLiteral(VELK_PROGRAM), arguments);
        const std::string line = test::waitForLine(service_);
        ASSERT_THAT(line, HasSubstr("http://"));
        address_ = line.substr(line.find("http://"));
        address_.erase(address_.find_last_not_of('\n') + 1);
    }

    QProcess service_;
    std::string address_;
};

TEST_F(Examples, OfThePageWorkAsTyped)
{
    const std::vector<Words> examples = firstExamples(test::readFile(fileString(std::string(VELK_COMMAND_PAGE))));
    ASSERT_GE(examples.size(), 6U);
    for (const Words& example : examples)
        type(example);
}

TEST_F(Examples, OfTheHelpWorkAsTyped)
{
    const std::string help = test::runProgram(folder(), {"--help"}).output;
    const std::vector<Words> examples = firstExamples(help.substr(std::min(help.find("Try it"), help.size())));
    ASSERT_EQ(examples.size(), 3U);
    for (const Words& example : examples)
        type(example);
}

// The table of a source's columns has a CSV file as its example.
TEST_F(Examples, OfACsvFileIsASource)
{
    const std::string page = test::readFile(fileString(std::string(VELK_COMMAND_PAGE)));
    std::string csv;
    std::istringstream lines(page.substr(std::min(page.find("    name;category"), page.size())));
    for (std::string line; std::getline(lines, line) && line.starts_with("    ");)
        csv += line.substr(4) + "\n";
    ASSERT_NE(csv, "");
    test::writeFile(folder() / U"p.csv", csv);
    const test::ProgramRun run =
        test::runProgram(folder(), {"catalog", "build", "p.csv", "-o", "p.calib", "--language", "de"});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("p.calib: p (de), 2 items in 4 folders"));
}

}  // namespace
