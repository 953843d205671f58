#include "VelkLibrary/UI/PanelTest.h"
#include "support/Numbers.h"

#include <gmock/gmock.h>

#include <limits>
#include <utility>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

class ProgressTextTest : public test::PanelTest
{
protected:
    // Makes the panel and writes down what its text object emits.
    void makeText(int displayType)
    {
        makePanel(displayType);
        QObject::connect(&text(), &ProgressText::setLabelText, &window_,
                         [this](const QString& emitted) { emitted_.push_back("label " + emitted.toStdString()); });
        QObject::connect(&text(), &ProgressText::setRangeText, &window_,
                         [this](const QString& emitted) { emitted_.push_back("range " + emitted.toStdString()); });
    }

    std::vector<std::string> takeEmitted() { return std::exchange(emitted_, {}); }

    void setValueAndRange(int value, int range)
    {
        call(text(), "onSetValue", Q_ARG(int, value));
        call(text(), "onSetRange", Q_ARG(int, range));
    }

    std::string lastRangeText() const { return emitted_.empty() ? "nothing emitted" : emitted_.back().substr(6); }

private:
    std::vector<std::string> emitted_;
};

// ---- What is emitted -----------------------------------------------------------------------------

TEST_F(ProgressTextTest, BelongsToThePanel)
{
    makeText(test::displayType::barOnly);
    EXPECT_EQ(text().parent(), &panel());
}

TEST_F(ProgressTextTest, EmitsNothingByItself)
{
    makeText(test::displayType::percentage);
    test::Application::deliverEvents();
    EXPECT_THAT(takeEmitted(), IsEmpty());
}

TEST_F(ProgressTextTest, EverySlotEmitsBothTextsOnce)
{
    makeText(test::displayType::percentage);
    call(text(), "onSetRange", Q_ARG(int, 8));
    EXPECT_THAT(takeEmitted(), ElementsAre("label ", "range 0"));
    call(text(), "onSetValue", Q_ARG(int, 2));
    EXPECT_THAT(takeEmitted(), ElementsAre("label ", "range 25"));
    call(text(), "onSetText", Q_ARG(std::string, "Copying"));
    EXPECT_THAT(takeEmitted(), ElementsAre("label Copying", "range 25"));
    call(text(), "onSwitchDisplayType", Q_ARG(ProgressDisplayType, ProgressDisplayType::Amounts));
    EXPECT_THAT(takeEmitted(), ElementsAre("label Copying", "range 2 of 8"));
    call(text(), "onPauseProcess");
    EXPECT_THAT(takeEmitted(), ElementsAre("label Copying", "range 2 of 8"));
    call(text(), "onResumeProcess");
    EXPECT_THAT(takeEmitted(), ElementsAre("label Copying", "range 2 of 8"));
}

TEST_F(ProgressTextTest, ARepetitionChangesNothing)
{
    makeText(test::displayType::percentage);
    setValueAndRange(2, 8);
    const std::vector<std::string> first = takeEmitted();
    setValueAndRange(2, 8);
    EXPECT_EQ(takeEmitted().back(), first.back());
}

TEST_F(ProgressTextTest, ReachesTheLabelsThroughTheQueue)
{
    makeText(test::displayType::percentage);
    call(text(), "onSetText", Q_ARG(std::string, "Copying"));
    setValueAndRange(2, 8);
    EXPECT_EQ(labelText(), "");
    EXPECT_EQ(rangeText(), "");
    test::Application::deliverEvents();
    EXPECT_EQ(labelText(), "Copying");
    EXPECT_EQ(rangeText(), "25");
}

// ---- Percentages ---------------------------------------------------------------------------------

struct PercentageCase
{
    const char* name;
    int value;
    int range;
    const char* text;
};

void PrintTo(const PercentageCase& row, std::ostream* out)
{
    *out << row.value << " of " << row.range;
}

class Percentages : public ProgressTextTest, public testing::WithParamInterface<PercentageCase>
{};

TEST_P(Percentages, AreWholeNumbers)
{
    makeText(test::displayType::percentage);
    setValueAndRange(GetParam().value, GetParam().range);
    EXPECT_EQ(lastRangeText(), GetParam().text);
}

const PercentageCase percentages[] = {
    {"None", 0, 200, "0"},
    {"AQuarter", 50, 200, "25"},
    {"All", 200, 200, "100"},
    {"TheValueIsLimitedToTheRange", 300, 200, "100"},
    {"CutOff", 2, 3, "66"},
    {"CutOffBelowAll", 999, 1000, "99"},
    {"NoRange", 50, 0, "0"},
    {"NothingOfNothing", 0, 0, "0"},
    {"NegativeRange", 50, -200, "0"},
    {"NegativeBoth", -50, -200, "0"},
    {"NegativeValue", -50, 200, "-25"},
    {"NegativeCutOff", -1, 200, "0"},
    {"LargestValue", highest, highest, "100"},
    {"LargeHalf", highest / 2, highest, "49"},
    {"LargestValueOfOne", highest, 1, "100"},
    {"LowestValue", lowest, 1, "-214748364800"},
    {"LowestRange", 1, lowest, "0"},
};
INSTANTIATE_TEST_SUITE_P(Rows, Percentages, testing::ValuesIn(percentages),
                         [](const auto& row) { return row.param.name; });

TEST_F(ProgressTextTest, APercentageIsPutIntoTheHostsText)
{
    texts_[test::textNumber::percentage] =
        U"%1% %% \x00FC"
        U"ber";
    makeText(test::displayType::percentage);
    setValueAndRange(50, 200);
    EXPECT_EQ(lastRangeText(),
              "25 % \xC3\xBC"
              "ber");
}

// ---- Amounts -------------------------------------------------------------------------------------

TEST_F(ProgressTextTest, AmountsHaveThousandsSeparators)
{
    makeText(test::displayType::amounts);
    setValueAndRange(1234, 1234567);
    EXPECT_EQ(lastRangeText(), "1,234 of 1,234,567");
    setValueAndRange(lowest, highest);
    EXPECT_EQ(lastRangeText(), "-2,147,483,648 of 2,147,483,647");
}

TEST_F(ProgressTextTest, AmountsAreNotLimitedToTheRange)
{
    makeText(test::displayType::amounts);
    setValueAndRange(300, 200);
    EXPECT_EQ(lastRangeText(), "300 of 200");
}

TEST_F(ProgressTextTest, AmountsAreWrittenAsTheHostWritesNumbers)
{
    makeText(test::displayType::amounts);
    Velk::HostServices host = *Velk::host();
    host.numberFormat.thousandsSeparator = ".";
    Velk::installHost(std::move(host));
    setValueAndRange(1000, 2000);
    EXPECT_EQ(lastRangeText(), "1.000 of 2.000");
}

TEST_F(ProgressTextTest, UnitsFollowAmounts)
{
    makeText(test::displayType::amounts);
    text().setUnits("KB");
    EXPECT_THAT(takeEmitted(), IsEmpty()) << "units alone refresh nothing";
    setValueAndRange(1, 2);
    EXPECT_EQ(lastRangeText(), "1 of 2 KB");
    text().setUnits("");
    setValueAndRange(1, 2);
    EXPECT_EQ(lastRangeText(), "1 of 2");
}

TEST_F(ProgressTextTest, UnitsDoNotFollowPercentages)
{
    makeText(test::displayType::percentage);
    text().setUnits("KB");
    setValueAndRange(1, 2);
    EXPECT_EQ(lastRangeText(), "50");
}

// ---- Other display types -------------------------------------------------------------------------

class NoRangeText : public ProgressTextTest, public testing::WithParamInterface<int>
{};

TEST_P(NoRangeText, IsShown)
{
    makeText(test::displayType::amounts);
    text().setUnits("KB");
    setValueAndRange(1, 2);
    call(text(), "onSwitchDisplayType", Q_ARG(ProgressDisplayType, ProgressDisplayType{GetParam()}));
    EXPECT_EQ(lastRangeText(), "");
    call(text(), "onSetText", Q_ARG(std::string, "Copying"));
    EXPECT_THAT(takeEmitted(), testing::Contains("label Copying"));
}

INSTANTIATE_TEST_SUITE_P(Rows, NoRangeText, testing::Values(1, 0, 4, -1, lowest, highest));

TEST_F(ProgressTextTest, WithoutADisplayTypeNothingIsDescribed)
{
    installDisplayType({});
    const std::unique_ptr<LibraryProgressPanel> panel(LibraryProgressPanel::create(nullptr));
    panel->onSetValueInGauge(1);
    test::Application::deliverEvents();
    EXPECT_EQ(qobject_cast<QLabel*>(panel->layout()->itemAt(2)->widget())->text(), QString());
    ASSERT_FALSE(messages().empty());
    EXPECT_EQ(messages()[0].line, test::reportLine::preferenceRead);
    EXPECT_EQ(messages()[0].text,
              U"Get pref isA failure: Expected preference 'display type' to be of type 'int', but "
              U"instead found it to be of type 'void'.");
}

// ---- Odd texts -----------------------------------------------------------------------------------

struct TextCase
{
    const char* name;
    std::string text;
    const char* shown;  // UTF-8
};

void PrintTo(const TextCase& row, std::ostream* out)
{
    *out << row.name;
}

class LabelTexts : public ProgressTextTest, public testing::WithParamInterface<TextCase>
{};

TEST_P(LabelTexts, AreReadAsUtf8WithFileNamesInWindows1252)
{
    makeText(test::displayType::barOnly);
    panel().onSetText(GetParam().text);
    test::Application::deliverEvents();
    EXPECT_EQ(labelText(), GetParam().shown);
}

const TextCase labelTexts[] = {
    {"Empty", "", ""},
    {"Ascii", "Checking plants.calib", "Checking plants.calib"},
    {"Utf8",
     "Pr\xC3\xBC"
     "fe \xF0\x9F\x8C\xB3",
     "Pr\xC3\xBC"
     "fe \xF0\x9F\x8C\xB3"},
    {"Windows1252",
     "Checking K\xFC"
     "che.calib",
     "Checking K\xC3\xBC"
     "che.calib"},
    {"Both",
     "Pr\xC3\xBC"
     "fe K\xFC"
     "che.calib",
     "Pr\xC3\xBC"
     "fe K\xC3\xBC"
     "che.calib"},
    {"Windows1252AtTheEnd", "Caf\xE9", "Caf\xC3\xA9"},
    {"Windows1252Quotes",
     "\x93"
     "a\x94",
     "\xE2\x80\x9C"
     "a\xE2\x80\x9D"},
};
INSTANTIATE_TEST_SUITE_P(Rows, LabelTexts, testing::ValuesIn(labelTexts),
                         [](const auto& row) { return row.param.name; });

struct PatternCase
{
    const char* name;
    std::u32string pattern;
    const char* shown;
};

void PrintTo(const PatternCase& row, std::ostream* out)
{
    *out << row.name;
}

class OddPatterns : public ProgressTextTest, public testing::WithParamInterface<PatternCase>
{};

TEST_P(OddPatterns, StillYieldSomethingReadable)
{
    texts_[test::textNumber::amounts] = GetParam().pattern;
    makeText(test::displayType::amounts);
    setValueAndRange(1, 2);
    EXPECT_EQ(lastRangeText(), GetParam().shown);
}

const PatternCase patterns[] = {
    {"Empty", U"", "1 2"},
    {"OneArgument", U"%1%", "1"},
    {"ThreeArguments", U"%1% %2% %3%!", "1 2 !"},
    {"TheOtherOrder", U"%2%/%1%", "2/1"},
    {"None", U"moving", "moving"},
};
INSTANTIATE_TEST_SUITE_P(Rows, OddPatterns, testing::ValuesIn(patterns),
                         [](const auto& row) { return row.param.name; });

}  // namespace
