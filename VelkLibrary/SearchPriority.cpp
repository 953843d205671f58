#include <VelkLibrary/SearchPriority.h>
