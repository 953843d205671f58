#include <VelkCommon/Reporting/ProgressSubject.h>
