// What the SHA-1 of a file costs, beside OpenSSL with reads of 64 KiB and the sha1sum command. No arguments.
#include "Measures.h"

#include <VelkCommon/Files/SHA1.h>

#include <openssl/evp.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr int rounds = 15;

std::string hex(const unsigned char* bytes, unsigned size)
{
    std::string text;
    for (unsigned i = 0; i < size; ++i) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", bytes[i]);
        text += digits;
    }
    return text;
}

std::string byOpenSsl(const std::string& path)
{
    std::vector<unsigned char> block(1 << 16);
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned size = 0;
    EVP_MD_CTX* const context = EVP_MD_CTX_new();
    EVP_DigestInit_ex(context, EVP_sha1(), nullptr);
    const int file = ::open(path.c_str(), O_RDONLY);
    ssize_t got = 0;
    while ((got = ::read(file, block.data(), block.size())) > 0)
        EVP_DigestUpdate(context, block.data(), static_cast<std::size_t>(got));
    ::close(file);
    EVP_DigestFinal_ex(context, digest, &size);
    EVP_MD_CTX_free(context);
    return hex(digest, size);
}

double seconds(int who)
{
    struct rusage usage = {};
    ::getrusage(who, &usage);
    const auto value = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return value(usage.ru_utime) + value(usage.ru_stime);
}

double timeOf(const std::function<void()>& work, int who = RUSAGE_SELF)
{
    const double begin = seconds(who);
    work();
    return seconds(who) - begin;
}

struct Times
{
    double own = std::numeric_limits<double>::max();
    double openSsl = own;
    double command = own;
};

/// The least times; the three take turns, because the machine's speed drifts.
Times measure(const std::string& path, int repetitions)
{
    Times times;
    const fileString file(path);
    const auto repeated = [&](const auto& work) {
        return [&work, repetitions] {
            for (int i = 0; i < repetitions; ++i)
                work();
        };
    };
    const std::string line = "sha1sum '" + path + "' >/dev/null";
    for (int round = 0; round < rounds; ++round) {
        const auto own = [&] { SHA1::fileContentsToSHA1Hex(file); };
        const auto peer = [&] { byOpenSsl(path); };
        const auto command = [&] {
            if (std::system(line.c_str()) != 0)
                std::fprintf(stderr, "sha1sum failed\n");
        };
        times.own = std::min(times.own, timeOf(repeated(own)) / repetitions);
        times.openSsl = std::min(times.openSsl, timeOf(repeated(peer)) / repetitions);
        times.command = std::min(times.command, timeOf(command, RUSAGE_CHILDREN));
    }
    return times;
}

}  // namespace

int main()
{
    const std::string path =
        (std::filesystem::temp_directory_path() / ("velk-bench-hash-" + std::to_string(::getpid()))).string();
    std::vector<bench::Measure> measures;
    std::printf("%-12s %12s %12s %12s\n", "ms", "own", "OpenSSL", "sha1sum");
    for (const std::size_t size : {std::size_t{1} << 20U, std::size_t{200} << 20U}) {
        std::string bytes(size, '\0');
        std::uint32_t state = 1;
        for (char& byte : bytes)
            byte = static_cast<char>((state = state * 1664525U + 1013904223U) >> 24U);
        std::ofstream(path, std::ios::binary) << bytes;
        if (SHA1::fileContentsToSHA1Hex(fileString(path)) != byOpenSsl(path)) {
            std::fprintf(stderr, "The digests differ.\n");
            return EXIT_FAILURE;
        }
        const Times times = measure(path, size > (std::size_t{10} << 20U) ? 1 : 20);
        const std::string name = std::to_string(size >> 20U) + " MiB";
        std::printf("%-12s %12.3f %12.3f %12.3f\n", name.c_str(), times.own * 1e3, times.openSsl * 1e3,
                    times.command * 1e3);
        measures.push_back(
            {"SHA-1 of " + name + ", against OpenSSL", times.own / times.openSsl, 1.10, 1.02, false, "x"});
    }
    std::filesystem::remove(path);
    std::printf("\n");
    return bench::printMeasures(measures) ? EXIT_SUCCESS : EXIT_FAILURE;
}
