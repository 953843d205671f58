#include <VelkCommon/Imaging/ImageUtils.h>
