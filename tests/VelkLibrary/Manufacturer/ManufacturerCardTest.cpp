#include <VelkLibrary/Manufacturer/Manufacturer.h>

#include "ManufacturerTest.h"

#include <gtest/gtest.h>

namespace {

using test::describe;
using test::timeOf;

using Card = test::ManufacturerTest;

TEST_F(Card, IsEmptyAndNewByDefault)
{
    const test::Time before = Library::getTimeNow();
    const Manufacturer card;
    EXPECT_GE(card.getLastModified(), before);
    EXPECT_LE(card.getLastModified(), Library::getTimeNow());
    EXPECT_EQ(card.getManufacturerName(), U"");
    EXPECT_EQ(card.getManufacturerUrl(), U"");
    EXPECT_EQ(card.getManufacturerPhoneNumber(false), U"");
    EXPECT_EQ(card.getManufacturerFaxNumber(true), U"");
    EXPECT_EQ(card.getManufacturerEmail(true), U"");
    EXPECT_TRUE(card.getManufacturerLogoName().empty());
    EXPECT_FALSE(card.isDeleted());
    EXPECT_FALSE(card.isPhoneDefaulted());
    EXPECT_FALSE(card.isFaxDefaulted());
    EXPECT_FALSE(card.isEmailDefaulted());
}

TEST_F(Card, HoldsWhatItIsGiven)
{
    const Manufacturer card(U"N", U"U", U"P", U"F", std::u32string(U"L"), U"E", true, timeOf("20260102T030405"));
    EXPECT_EQ(describe(card), "N|U|P|F|L|E|true|20260102T030405");
}

TEST_F(Card, CopiesShareNothing)
{
    Manufacturer card = test::makeCard(U"Acme");
    const Manufacturer copy = card;
    card.setLastModified(timeOf("20270101T000000"));
    card.setPhoneDefaulted();
    EXPECT_EQ(describe(copy), "Acme|https://Acme|phone|fax||e-mail|false|20260101T000000");
    Manufacturer assigned;
    assigned = card;
    card.setLastModified(timeOf("20280101T000000"));
    EXPECT_EQ(describe(assigned), "Acme|https://Acme|default|fax||e-mail|false|20270101T000000");
    Manufacturer& itself = assigned;
    assigned = itself;
    EXPECT_EQ(describe(assigned), "Acme|https://Acme|default|fax||e-mail|false|20270101T000000");
}

TEST_F(Card, ComparesEverythingExceptTheFax)
{
    const auto time = timeOf("20260101T000000");
    const Manufacturer card(U"N", U"U", U"P", U"F", std::u32string(U"L"), U"E", false, time);
    const auto differs = [&](const Manufacturer& other) { return !(card == other) && !(other == card); };
    EXPECT_TRUE(card == Manufacturer(card));
    EXPECT_TRUE(card == Manufacturer(U"N", U"U", U"P", U"another fax", std::u32string(U"L"), U"E", false, time));
    EXPECT_TRUE(differs(Manufacturer(U"n", U"U", U"P", U"F", std::u32string(U"L"), U"E", false, time)));
    EXPECT_TRUE(differs(Manufacturer(U"N", U"u", U"P", U"F", std::u32string(U"L"), U"E", false, time)));
    EXPECT_TRUE(differs(Manufacturer(U"N", U"U", U"p", U"F", std::u32string(U"L"), U"E", false, time)));
    EXPECT_TRUE(differs(Manufacturer(U"N", U"U", U"P", U"F", std::u32string(U"l"), U"E", false, time)));
    EXPECT_TRUE(differs(Manufacturer(U"N", U"U", U"P", U"F", std::u32string(U"L"), U"e", false, time)));
    EXPECT_TRUE(differs(Manufacturer(U"N", U"U", U"P", U"F", std::u32string(U"L"), U"E", true, time)));
    EXPECT_TRUE(differs(
        Manufacturer(U"N", U"U", U"P", U"F", std::u32string(U"L"), U"E", false, timeOf("20260101T000000.000001"))));
}

TEST_F(Card, ShowsTheDefaultTextForTheMarker)
{
    managerOf(R"({"Version": "42", "Default_Text": "See the web site"})");
    Manufacturer card = test::makeCard(U"Acme");
    EXPECT_EQ(card.getManufacturerPhoneNumber(true), U"phone");
    card.setFaxDefaulted();
    EXPECT_TRUE(card.isFaxDefaulted());
    EXPECT_FALSE(card.isPhoneDefaulted());
    EXPECT_FALSE(card.isEmailDefaulted());
    EXPECT_EQ(card.getManufacturerFaxNumber(false), U"default");
    EXPECT_EQ(card.getManufacturerFaxNumber(true), U"See the web site");
    card.setPhoneDefaulted();
    card.setEmailDefaulted();
    EXPECT_TRUE(card.isPhoneDefaulted());
    EXPECT_TRUE(card.isEmailDefaulted());
    EXPECT_EQ(card.getManufacturerPhoneNumber(false), U"default");
    EXPECT_EQ(card.getManufacturerPhoneNumber(true), U"See the web site");
    EXPECT_EQ(card.getManufacturerEmail(false), U"default");
    EXPECT_EQ(card.getManufacturerEmail(true), U"See the web site");
}

TEST_F(Card, KnowsTheMarkerExactly)
{
    for (const char32_t* const text : {U"Default", U"default ", U" default", U"DEFAULT", U""}) {
        const Manufacturer card(U"", U"", text, text, fileString(), text, false, test::Time());
        EXPECT_FALSE(card.isPhoneDefaulted());
        EXPECT_FALSE(card.isFaxDefaulted());
        EXPECT_FALSE(card.isEmailDefaulted());
        EXPECT_EQ(card.getManufacturerPhoneNumber(true), text);
    }
    const Manufacturer card(U"", U"", U"default", U"x", fileString(), U"x", false, test::Time());
    EXPECT_TRUE(card.isPhoneDefaulted());
}

TEST_F(Card, HasItsLogoInTheDataFolder)
{
    const Manufacturer card = test::makeCard(U"Acme", U"acme.png");
    EXPECT_EQ(card.getManufacturerLogoName(), fileString(std::u32string(U"acme.png")));
    EXPECT_EQ(card.getManufacturerFullLogoName(), (dataFolder() / std::u32string(U"acme.png")).unicodeString());
    EXPECT_EQ(Manufacturer().getManufacturerFullLogoName(), dataFolder().unicodeString());
}

}  // namespace
