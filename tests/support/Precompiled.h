#pragma once

/// @file
/// What nearly every test includes, compiled once. A test includes what it needs all the same.

#include "support/TestHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>
