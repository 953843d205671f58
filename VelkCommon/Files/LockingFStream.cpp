#include <VelkCommon/Files/LockingFStream.h>
