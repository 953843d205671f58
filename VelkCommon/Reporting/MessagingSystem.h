#pragma once

#include <VelkCommon/Export.h>

#include <cstddef>
#include <string>

/// Messages to the user. The host shows them (HostServices::showMessage); without a host they go to
/// standard error.
namespace error {

/// How bad it is.
enum class Severity { Information, Warning, Error };

/// What the user pressed; `None` where a host shows nothing to press.
enum class Button { None, Ok, Cancel, Yes, No };

/// What a message offers to press.
enum class Buttons { Ok, OkCancel, YesNo };

/// How a message looks: its severity and the buttons that it offers.
struct MessageTrait
{
    Severity severity = Severity::Information;  ///< what it looks like
    Buttons buttons = Buttons::Ok;              ///< what there is to press
};

/// A warning with one acknowledging button. Lives until the process ends.
VELKCOMMON_EXPORT const MessageTrait& WarningTrait();
/// An error with one acknowledging button and nothing else. Lives until the process ends.
VELKCOMMON_EXPORT const MessageTrait& ErrorMinimalTrait();

/// One message, as the host's message service gets it.
struct Message
{
    std::string sourceFile;  ///< who reports it
    std::size_t line = 0;    ///< the line there
    MessageTrait trait;      ///< severity and buttons
    long id = 0;             ///< the number of the message, also of its text
    std::u32string text;     ///< what it is about, such as a path
    std::u32string detail1;  ///< more of it; often empty
    std::u32string detail2;  ///< more of it; often empty

    /// What a person reads: the numbered text of `id` with the three texts in place of "%1%" to "%3%",
    /// or the texts themselves where the number has none. UTF-8.
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
