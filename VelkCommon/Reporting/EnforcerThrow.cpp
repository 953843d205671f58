#include <VelkCommon/Reporting/EnforcerThrow.h>
