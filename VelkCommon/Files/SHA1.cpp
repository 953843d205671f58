#include <VelkCommon/Files/SHA1.h>

#include <VelkCommon/Platform/File.h>
#include <VelkCommon/Text/Hexadecimal.h>

#include <openssl/crypto.h>
#include <openssl/evp.h>

#include <array>
#include <atomic>
#include <memory>
#include <vector>

namespace {

constexpr std::size_t blockSize = std::size_t{1} << 18;

using Context = std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)>;

// Looked up once, because the look-up by name takes longer than hashing a small file. Never freed, because the
// crypto library may be gone first when the process ends. Where its set-up ran out of memory, a look-up would crash.
const EVP_MD* algorithm()
{
    static std::atomic<const EVP_MD*> known = nullptr;
    if (const EVP_MD* const found = known)
        return found;
    if (OSSL_LIB_CTX_get0_global_default() == nullptr)
        return nullptr;
    EVP_MD* const fetched = EVP_MD_fetch(nullptr, "SHA1", nullptr);
    const EVP_MD* none = nullptr;
    if (known.compare_exchange_strong(none, fetched))
        return fetched;
    EVP_MD_free(fetched);  // another thread has looked it up meanwhile
    return none;
}

/// The digest of all bytes that `addAll` adds to the context that it is given; empty when `addAll` or the
/// crypto library fails.
template <typename AddAll>
std::string digestOf(AddAll addAll)
{
    const Context context(EVP_MD_CTX_new(), &EVP_MD_CTX_free);
    if (!context || algorithm() == nullptr)
        return {};
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int size = 0;
    if (EVP_DigestInit_ex(context.get(), algorithm(), nullptr) != 1 || !addAll(context.get()) ||
        EVP_DigestFinal_ex(context.get(), digest.data(), &size) != 1)
        return {};
    return Velk::Hexadecimal::textOf({reinterpret_cast<const char*>(digest.data()), size});
}

bool addFile(EVP_MD_CTX* context, Velk::Platform::File& file)
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

}  // namespace

std::string SHA1::fileContentsToSHA1Hex(const fileString& path)
{
    auto file = Velk::Platform::File::open(path.utf8(), Velk::Platform::File::Mode::read);
    if (!file.isOpen())
        return {};
    file.expectSequentialReading();
    return digestOf([&](EVP_MD_CTX* context) { return addFile(context, file); });
}

std::string SHA1::bytesToSHA1Hex(std::string_view bytes)
{
    return digestOf([&](EVP_MD_CTX* context) { return EVP_DigestUpdate(context, bytes.data(), bytes.size()) == 1; });
}
