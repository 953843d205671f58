#include <VelkCommon/Files/ReplacementFile.h>
