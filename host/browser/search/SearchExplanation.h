#pragma once

#include <VelkLibrary/Search/Info.h>

#include <QString>

namespace VelkHost {

/// How a search was understood, in the window's language: its alternatives with their terms and excluded terms.
QString explanationOf(const Library::Search::Info& info);

}  // namespace VelkHost
