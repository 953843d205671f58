#include <VelkCommon/Text/xl8.h>
