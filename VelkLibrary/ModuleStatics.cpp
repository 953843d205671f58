#include <VelkLibrary/detail/ModuleStatics.h>
