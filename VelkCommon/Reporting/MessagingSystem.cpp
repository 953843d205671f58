#include <VelkCommon/Reporting/MessagingSystem.h>

#include <VelkCommon/HostServices.h>
#include <VelkCommon/Platform/Process.h>
#include <VelkCommon/Reporting/detail/ReportLine.h>
#include <VelkCommon/Text/FormatText.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkCommon/detail/AskHost.h>
#include <VelkCommon/detail/NeverDestroyed.h>

#include <limits>
#include <utility>

namespace error {
namespace {

const char* nameOf(Severity severity)
{
    switch (severity) {
        case Severity::Information:
            return "information";
        case Severity::Warning:
            return "warning";
        case Severity::Error:
            return "error";
    }
    return "message";
}

void writeMessage(const Message& message)
{
    Velk::detail::writeReportLine(std::string("velk: ") + nameOf(message.trait.severity) + ": " + message.formatted() +
                                  " (" + message.sourceFile + ":" + std::to_string(message.line) + ", " +
                                  std::to_string(message.id) + ")");
}

Button show(const Message& message)
{
    if (const auto button = Velk::detail::askHost(Velk::host()->showMessage, message))
        return *button;
    writeMessage(message);
    return Button::Ok;
}

/// The numbered text; empty for a number without one.
std::string numberedText(long id)
{
    if (id <= 0 || id > std::numeric_limits<int>::max())
        return {};
    return StringUtils::loadString(static_cast<unsigned int>(id));
}

}  // namespace

const MessageTrait& WarningTrait()
{
    static constexpr MessageTrait trait{Severity::Warning, Buttons::Ok};
    return trait;
}

const MessageTrait& ErrorMinimalTrait()
{
    static constexpr MessageTrait trait{Severity::Error, Buttons::Ok};
    return trait;
}

std::string Message::formatted() const
{
    return Velk::formatText(numberedText(id), StringConvert::toStdUtf8String(text),
                            StringConvert::toStdUtf8String(detail1), StringConvert::toStdUtf8String(detail2));
}

MessagingSystem& MessagingSystem::control()
{
    static Velk::detail::NeverDestroyed<MessagingSystem> system([] { return MessagingSystem(); });
    return *system;
}

Button MessagingSystem::notify(const char* sourceFile, std::size_t line, const MessageTrait& trait, long messageId,
                               const std::string& text, const std::string& detail1, const std::string& detail2)
try {
    return notify(sourceFile, line, trait, messageId, StringConvert::toUnicodeFromUtf8(text),
                  StringConvert::toUnicodeFromUtf8(detail1), StringConvert::toUnicodeFromUtf8(detail2));
} catch (...) {
    return Button::Ok;  // no memory for the message
}

Button MessagingSystem::notify(const char* sourceFile, std::size_t line, const MessageTrait& trait, long messageId,
                               const std::u32string& text, const std::u32string& detail1, const std::u32string& detail2)
try {
    return show({sourceFile != nullptr ? sourceFile : "", line, trait, messageId, text, detail1, detail2});
} catch (...) {
    return Button::Ok;  // no memory for the message
}

std::wstring getSystemError()
{
    const std::string text = Velk::Platform::lastErrorText();
    return StringConvert::toWide(StringConvert::toUnicodeFromUtf8(text));
}

}  // namespace error
