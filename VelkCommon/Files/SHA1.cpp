#include <VelkCommon/Files/SHA1.h>

#include <VelkCommon/Platform/Platform.h>

#include <openssl/evp.h>

#include <array>
#include <memory>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t blockSize = std::size_t{1} << 18;

using Context = std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)>;

// Looked up once: the look-up by name costs more than a small file. Never freed, as the crypto library
// may be gone first when the process ends.
const EVP_MD* algorithm()
{
    static const EVP_MD* const fetched = EVP_MD_fetch(nullptr, "SHA1", nullptr);
    return fetched;
}

bool digestFile(Velk::Platform::File& file, EVP_MD_CTX* context)
{
    std::vector<char> block(blockSize);
    for (;;) {
        const long long got = file.read(block.data(), block.size());
        if (got <= 0)
            return got == 0;
        if (EVP_DigestUpdate(context, block.data(), static_cast<std::size_t>(got)) != 1)
            return false;
    }
}

std::string toHex(const unsigned char* bytes, std::size_t size)
{
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    text.reserve(2 * size);
    for (std::size_t i = 0; i < size; ++i)
        text.append({digits[bytes[i] >> 4U], digits[bytes[i] & 0x0FU]});
    return text;
}

}  // namespace

std::string SHA1::fileContentsToSHA1Hex(const fileString& path)
{
    auto file = Velk::Platform::File::open(path.utf8(), Velk::Platform::File::Mode::read);
    const Context context(EVP_MD_CTX_new(), &EVP_MD_CTX_free);
    if (!file.isOpen() || !context || algorithm() == nullptr)
        return {};
    file.expectSequentialReading();
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int size = 0;
    if (EVP_DigestInit_ex(context.get(), algorithm(), nullptr) != 1 || !digestFile(file, context.get()) ||
        EVP_DigestFinal_ex(context.get(), digest.data(), &size) != 1)
        return {};
    return toHex(digest.data(), size);
}
