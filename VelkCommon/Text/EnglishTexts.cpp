#include <VelkCommon/Text/EnglishTexts.h>
