#include <VelkCommon/Files/FileReaper.h>
