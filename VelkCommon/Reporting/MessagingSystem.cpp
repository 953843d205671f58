#include <VelkCommon/Reporting/MessagingSystem.h>
