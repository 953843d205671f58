#include <VelkLibrary/LibraryProgressBase.h>

#include <QCoreApplication>
#include <QEvent>
#include <QMetaObject>
#include <QMetaType>
#include <QObject>
#include <QPointer>

#include <deque>
#include <functional>
#include <mutex>
#include <utility>

using LibraryCatalogUpdate::UpdateData;

namespace {

void registerMetaTypes()
{
    qRegisterMetaType<std::string>("std::string");
    qRegisterMetaType<quint64>("size_t");
    qRegisterMetaType<fileString>("fileString");
    qRegisterMetaType<UpdateData>("LibraryCatalogUpdate::UpdateData");
    qRegisterMetaType<FileStringPair>("FileStringPair");
}

}  // namespace

// Lives on the receiver's thread and makes the calls there. Only there may the guarded pointer be looked
// at: after a look from another thread, the receiver could be destroyed before the call.
class LibraryProgressBase::Relay : public QObject
{
public:
    using Call = std::function<void(QObject& receiver)>;

    explicit Relay(QObject& receiver) : receiver_(&receiver) { moveToThread(receiver.thread()); }

    static void post(const std::shared_ptr<Relay>& relay, Call call)
    {
        auto wakeUp = std::make_unique<WakeUp>(relay);
        relay->append(std::move(call));
        QCoreApplication::postEvent(relay.get(), wakeUp.release());
    }

protected:
    void customEvent(QEvent*) override
    {
        const Call call = takeFirst();
        if (QObject* const receiver = receiver_.data())
            call(*receiver);
    }

private:
    // One for each call. It keeps the relay alive until the call is made, or dropped with the event loop.
    class WakeUp : public QEvent
    {
    public:
        explicit WakeUp(std::shared_ptr<Relay> relay) : QEvent(QEvent::User), relay_(std::move(relay)) {}

    private:
        std::shared_ptr<Relay> relay_;
    };

    void append(Call call)
    {
        const std::lock_guard lock(mutex_);
        calls_.push_back(std::move(call));
    }

    Call takeFirst()
    {
        const std::lock_guard lock(mutex_);
        Call call = std::move(calls_.front());
        calls_.pop_front();
        return call;
    }

    const QPointer<QObject> receiver_;
    std::mutex mutex_;
    std::deque<Call> calls_;
};

LibraryProgressBase::LibraryProgressBase(QObject& receiver) : relay_(std::make_shared<Relay>(receiver))
{
    registerMetaTypes();
}

LibraryProgressBase::~LibraryProgressBase() = default;
LibraryProgressBase::LibraryProgressBase(const LibraryProgressBase&) = default;
LibraryProgressBase::LibraryProgressBase(LibraryProgressBase&&) noexcept = default;
LibraryProgressBase& LibraryProgressBase::operator=(const LibraryProgressBase&) = default;
LibraryProgressBase& LibraryProgressBase::operator=(LibraryProgressBase&&) noexcept = default;

void LibraryProgressBase::sendText(const std::string& text) const
{
    Relay::post(relay_, [text](QObject& receiver) {
        QMetaObject::invokeMethod(&receiver, "onSetText", Q_ARG(std::string, text));
    });
}

void LibraryProgressBase::sendRange(std::size_t range) const
{
    Relay::post(relay_, [range](QObject& receiver) {
        QMetaObject::invokeMethod(&receiver, "onSetRangeInGauge", Q_ARG(size_t, range));
    });
}

void LibraryProgressBase::sendStep() const
{
    Relay::post(relay_, [](QObject& receiver) { QMetaObject::invokeMethod(&receiver, "onUpdateInGauge"); });
}

void LibraryProgressBase::sendValue(std::size_t value) const
{
    Relay::post(relay_, [value](QObject& receiver) {
        QMetaObject::invokeMethod(&receiver, "onSetValueInGauge", Q_ARG(size_t, value));
    });
}

void LibraryProgressBase::sendUnits(const std::string& units) const
{
    Relay::post(relay_, [units](QObject& receiver) {
        QMetaObject::invokeMethod(&receiver, "onSetUnits", Q_ARG(std::string, units));
    });
}

void LibraryProgressBase::sendCatalogUpdated(const FileStringPair& paths) const
{
    Relay::post(relay_, [paths](QObject& receiver) {
        QMetaObject::invokeMethod(&receiver, "onCatalogUpdatedEvent", Q_ARG(FileStringPair, paths));
    });
}

void LibraryProgressBase::sendEnd(const UpdateData& data) const
{
    Relay::post(relay_, [data](QObject& receiver) {
        QMetaObject::invokeMethod(&receiver, "closeCatalogUpdateEvent",
                                  Q_ARG(const LibraryCatalogUpdate::UpdateData&, data));
    });
}

void LibraryProgressBase::sendCancelled() const
{
    Relay::post(relay_, [](QObject& receiver) { QMetaObject::invokeMethod(&receiver, "onClose"); });
}
