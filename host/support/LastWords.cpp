#include "host/support/LastWords.h"

#include "host/support/System.h"

#include <cstdlib>
#include <new>

namespace VelkHost {
namespace {

constinit LastWords lastWords{"", "", EXIT_FAILURE};

[[noreturn]] void giveUp() noexcept
{
    const char* what = lastWords.unexpected;
    try {
        if (std::current_exception())
            std::rethrow_exception(std::current_exception());
    } catch (const std::bad_alloc&) {
        what = lastWords.outOfMemory;
    } catch (...) {
        // There is no more to be told without memory.
    }
    writeToError(what);
    std::_Exit(lastWords.exitCode);
}

[[noreturn]] void giveUpWithoutMemory() noexcept
{
    writeToError(lastWords.outOfMemory);
    std::_Exit(lastWords.exitCode);
}

}  // namespace

std::terminate_handler endWith(const LastWords& words) noexcept
{
    lastWords = words;
    return std::set_terminate(giveUp);
}

EndWithoutMemory::EndWithoutMemory() noexcept : before_(std::set_new_handler(giveUpWithoutMemory)) {}

EndWithoutMemory::~EndWithoutMemory()
{
    std::set_new_handler(before_);
}

}  // namespace VelkHost
