#include <VelkCommon/Files/SHA1.h>
