#include <VelkLibrary/LibraryResultCategorizer.h>
