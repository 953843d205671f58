#include <VelkCommon/Imaging/QTUtils.h>
