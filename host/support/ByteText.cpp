#include "host/support/ByteText.h"

#include <VelkCommon/Text/StringUtils.h>

namespace VelkHost {

std::string byteText(std::uint64_t bytes)
{
    constexpr double bytesPerMegabyte = 1'000 * bytesPerKilobyte;
    if (bytes < 1'000)
        return std::to_string(bytes) + " bytes";
    if (bytes < 1'000'000)
        return kilobyteText(static_cast<long long>(bytes));
    return formatWithThousandsSeparatorPrecision(static_cast<double>(bytes) / bytesPerMegabyte, 1) + " MB";
}

std::string kilobyteText(long long bytes)
{
    return formatWithThousandsSeparatorPrecision(static_cast<double>(bytes) / bytesPerKilobyte, 0) + " KB";
}

}  // namespace VelkHost
