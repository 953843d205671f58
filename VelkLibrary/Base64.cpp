#include <VelkLibrary/Base64.h>
