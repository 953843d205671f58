#include <VelkCommon/Text/StringUtils.h>
