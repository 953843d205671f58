#pragma once

#include <VelkCommon/Export.h>

#include <cstddef>
#include <string>

/// Messages to the user. The host shows them (HostServices::showMessage); without a host they go to
/// standard error.
namespace error {

/// How serious a message is.
enum class Severity { Information, Warning, Error };

/// The button that the user pressed; `None` where a host shows no buttons.
enum class Button { None, Ok, Cancel, Yes, No };

/// The buttons that a message offers.
enum class Buttons { Ok, OkCancel, YesNo };

/// How a message looks: its severity and the buttons that it offers.
struct MessageTrait
{
    Severity severity = Severity::Information;  ///< how serious it looks
    Buttons buttons = Buttons::Ok;              ///< what the user can press
};

/// A warning with a single button to acknowledge it. Lives until the process ends.
VELKCOMMON_EXPORT const MessageTrait& WarningTrait();
/// An error with a single button to acknowledge it and nothing else. Lives until the process ends.
VELKCOMMON_EXPORT const MessageTrait& ErrorMinimalTrait();

/// One message, as the host's message service gets it.
struct Message
{
    std::string sourceFile;  ///< who reports it
    std::size_t line = 0;    ///< the line there
    MessageTrait trait;      ///< severity and buttons
    long id = 0;             ///< the number of the message and of its text
    std::u32string text;     ///< what it is about, such as a path
    std::u32string detail1;  ///< more of it; often empty
    std::u32string detail2;  ///< more of it; often empty

    /// The message as the user reads it, in UTF-8: the numbered text of `id` with `text`, `detail1` and
    /// `detail2` in place of "%1%" to "%3%", or these three by themselves where `id` has no text.
    VELKCOMMON_EXPORT std::string formatted() const;
};

/// The message service.
class VELKCOMMON_EXPORT MessagingSystem
{
public:
    /// The process-wide service.
    static MessagingSystem& control();

    /// Shows or records a message and returns the button that the user pressed (`Ok` without a host).
    /// Narrow texts are UTF-8. Never throws, whatever the host does. Any thread; whether it waits for
    /// the user is the host's business.
    /// @{
    Button notify(const char* sourceFile, std::size_t line, const MessageTrait& trait, long messageId,
                  const std::string& text, const std::string& detail1, const std::string& detail2);
    Button notify(const char* sourceFile, std::size_t line, const MessageTrait& trait, long messageId,
                  const std::u32string& text, const std::u32string& detail1, const std::u32string& detail2);
    /// @}

private:
    MessagingSystem() = default;
};

/// The text of the operating system's last error on this thread. Call it before anything else runs.
VELKCOMMON_EXPORT std::wstring getSystemError();

}  // namespace error
