// Reads any bytes as the message of another start of the window's program. What is taken is absolute paths, no more
// than the window takes, and makes the same message again.
#include "host/browser/opening/OpenMessage.h"

#include "Check.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace VelkHost;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::string_view head = bytes.substr(0, headSize);
    const std::optional<std::size_t> length = lengthInHead(head);
    fuzz::check(!length || *length <= mostOpenedBytes, "no message is too long");
    const std::string_view text = length ? bytes.substr(headSize, *length) : bytes;
    const std::optional<QStringList> files = filesInMessage(text);
    if (!files)
        return 0;
    fuzz::check(static_cast<std::size_t>(files->size()) <= mostOpenedFiles, "not too many files");
    const std::optional<std::string> again = openMessage(*files);
    fuzz::check(again && std::string_view(*again).substr(headSize) == text, "it is the same message again");
    fuzz::check(lengthInHead(std::string_view(*again).substr(0, headSize)) == text.size(), "with the right length");
    return 0;
}
