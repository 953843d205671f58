#include <VelkLibrary/Search/ParseTree.h>
