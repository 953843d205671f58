#include "host/support/LibraryPreference.h"

#include <VelkCommon/Reporting/PreferenceNumbers.h>

#include <gtest/gtest.h>

namespace VelkHost {
namespace {

TEST(LibraryPreference, HasTheLibrarysDescriptionAndTheHostsValue)
{
    const Velk::HostPreference preference = libraryPreference(Velk::preferenceNumbers::coreLibrariesStay, true);
    EXPECT_EQ(preference.number, 271u);
    EXPECT_EQ(preference.description, "Core libraries are left alone by an automatic update");
    EXPECT_EQ(std::any_cast<bool>(preference.value), true);
}

}  // namespace
}  // namespace VelkHost
