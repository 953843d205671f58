#include <VelkCommon/Reporting/Assertions.h>
