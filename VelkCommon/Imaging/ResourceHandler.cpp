#include <VelkCommon/Imaging/ResourceHandler.h>
