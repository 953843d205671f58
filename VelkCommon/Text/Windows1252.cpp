#include <VelkCommon/Text/StringConvert.h>
