#include <VelkCommon/Reporting/EnforcerThrow.h>

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(EnforcerThrowTest, ThrowsWhatNamesThePreconditionAndItsPlace)
{
    try {
        EnforcerThrow("!gApp", "LibraryCatalogUpdater", 131);
        FAIL() << "came back";
    } catch (const EnforcerException& exception) {
        EXPECT_EQ(exception.expression(), "!gApp");
        EXPECT_EQ(exception.sourceFile(), "LibraryCatalogUpdater");
        EXPECT_EQ(exception.line(), 131u);
        EXPECT_STREQ(exception.what(), "precondition violated: !gApp (LibraryCatalogUpdater:131)");
    }
}

TEST(EnforcerThrowTest, IsAProgrammingErrorOfTheCaller)
{
    EXPECT_THROW(EnforcerThrow("x", "source", 1), std::logic_error);
    EXPECT_THROW(EnforcerThrow("x", "source", 1), std::exception);
}

TEST(EnforcerThrowTest, TakesMissingTextsAsEmptyOnes)
{
    try {
        EnforcerThrow(nullptr, nullptr, 0);
        FAIL() << "came back";
    } catch (const EnforcerException& exception) {
        EXPECT_EQ(exception.expression(), "");
        EXPECT_EQ(exception.sourceFile(), "");
    }
}

TEST(EnforcerThrowTest, CopiesKeepEverything)
{
    const EnforcerException original("a > b", "source", 7);
    const EnforcerException copy = original;
    EXPECT_EQ(copy.expression(), "a > b");
    EXPECT_EQ(copy.line(), 7u);
    EXPECT_STREQ(copy.what(), original.what());
}

}  // namespace
