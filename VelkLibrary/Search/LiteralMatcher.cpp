#include <VelkLibrary/Search/detail/LiteralMatcher.h>
