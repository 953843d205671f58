#include <VelkLibrary/ErrorLog.h>
