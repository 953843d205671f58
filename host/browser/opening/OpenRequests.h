#pragma once

#include "host/support/SystemChannel.h"

#include <QObject>
#include <QStringList>

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <stop_token>
#include <thread>

namespace VelkHost {

/// What later starts of the program want to open in its window. They are heard one after the other, on a thread of its
/// own, and none is waited for longer than a moment: whoever says nothing, or anything else than what a start of this
/// program says, is hung up on. Made, called and destroyed on the user-interface thread, where its signals come.
class OpenRequests : public QObject
{
    Q_OBJECT

public:
    /// Tells on the user-interface thread whether the window can take so many files now.
    using Question = std::function<bool(std::size_t files)>;

    /// How long a program may take to say something.
    static constexpr std::chrono::milliseconds usualPatience{1'000};

    OpenRequests(std::unique_ptr<ChannelListener> listener, Question mayOpen,
                 std::chrono::milliseconds patience = usualPatience, QObject* parent = nullptr);
    /// Hears nobody any more.
    ~OpenRequests() override;

Q_SIGNALS:
    /// The program was started again, with these files or with none.
    void started(const QStringList& files);

private:
    void listen();
    void answer(Channel& channel);
    bool onWindow(std::function<bool()> work);

    const std::unique_ptr<ChannelListener> listener_;
    const Question mayOpen_;
    const std::chrono::milliseconds patience_;
    std::stop_source stop_;
    std::thread listening_;
};

}  // namespace VelkHost
