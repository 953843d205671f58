#include <VelkCommon/Files/fileString.h>
