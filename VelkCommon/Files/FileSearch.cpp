#include <VelkCommon/Files/FileSearch.h>
