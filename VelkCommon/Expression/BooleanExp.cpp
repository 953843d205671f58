#include <VelkCommon/Expression/BooleanExp.h>
