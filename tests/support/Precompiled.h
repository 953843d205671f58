#pragma once

/// @file
/// The headers that nearly every test includes, compiled once. Each test still includes the headers it needs.

#include "support/TestHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>
