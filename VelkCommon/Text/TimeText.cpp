#include <VelkCommon/Text/TimeText.h>
