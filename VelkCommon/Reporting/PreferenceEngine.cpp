#include <VelkCommon/Reporting/PreferenceEngine.h>
