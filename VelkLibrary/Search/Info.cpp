#include <VelkLibrary/Search/Info.h>
