#include <VelkCommon/Files/FileUtils.h>
