#include "host/browser/opening/OneWindow.h"

#include "host/browser/opening/OpenMessage.h"
#include "host/support/Folders.h"

#include <VelkCommon/Files/SHA1.h>

#include <thread>

namespace VelkHost {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds retryPause{20};
constexpr std::chrono::milliseconds lastAnswerPatience{1'000};  // where the window was ready just now

bool isHandedOver(const std::string& windowName, const std::string& message, WaitEnd end)
{
    const std::unique_ptr<Channel> channel = connectToChannel(windowName, end);
    return channel != nullptr && channel->send(message, end) && receives(*channel, readyAnswer, end) &&
           channel->send(goAnswer, end) && receives(*channel, doneAnswer, end + lastAnswerPatience);
}

}  // namespace

std::string windowName(const fileString& settingsFolder)
{
    fileString missing;
    fileString there = absolutePath(settingsFolder);
    fileString found = pathWithoutLinks(there);
    while (found.empty() && !there.empty() && there != there.parentPath()) {
        missing = there.stemWithExtension() / missing;
        there = there.parentPath();
        found = pathWithoutLinks(there);
    }
    return SHA1::bytesToSHA1Hex((found / missing).utf8());
}

// The window may have been opened a moment ago, or may just be closed, so it is asked again.
ProgramStart startOf(const std::string& windowName, const QStringList& files, std::chrono::milliseconds patience)
{
    const WaitEnd end = Clock::now() + patience;
    const std::optional<std::string> message = openMessage(files);
    for (;;) {
        Listening listening = listenOnChannel(windowName);
        if (!listening.isTaken || !message)
            return {std::move(listening.listener), false};
        if (isHandedOver(windowName, *message, end))
            return {nullptr, true};
        if (Clock::now() >= end)
            return {};
        std::this_thread::sleep_for(retryPause);
    }
}

}  // namespace VelkHost
