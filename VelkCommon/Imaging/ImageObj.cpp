#include <VelkCommon/Imaging/ImageObj.h>
