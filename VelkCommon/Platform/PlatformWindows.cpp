#include <VelkCommon/Platform/Platform.h>
