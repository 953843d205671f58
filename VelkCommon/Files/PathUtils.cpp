#include <VelkCommon/Files/PathUtils.h>
