#include <VelkLibrary/LibraryProgressBase.h>

#include <QMetaObject>
#include <QMetaType>
#include <QObject>

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

// Queues calls to the receiver itself, so that Qt takes them along when the receiver moves to another thread, and drops
// them when it is destroyed. Nothing is asked of the receiver but on the thread that makes a call, as only there it
// cannot be destroyed meanwhile.
class LibraryProgressBase::Relay
{
public:
    using Call = std::function<void(QObject& receiver)>;

    explicit Relay(QObject& receiver) : target_(std::make_shared<Target>(receiver))
    {
        end_ = QObject::connect(&receiver, &QObject::destroyed, [target = target_] { target->forget(); });
    }

    // The receiver keeps no trace of jobs that are gone. It is asked to let go of this one by itself, because only its
    // own thread may do that while it may be destroyed.
    ~Relay()
    {
        try {
            post([end = end_](QObject&) { QObject::disconnect(end); });
        } catch (...) {
            // Without memory, a connection stays that does nothing.
        }
    }

    Relay(const Relay&) = delete;
    Relay& operator=(const Relay&) = delete;

    void post(Call call) const { target_->post(std::move(call)); }

private:
    // The receiver waits in its destructor while a call is being queued.
    class Target
    {
    public:
        explicit Target(QObject& receiver) : receiver_(&receiver) {}

        void forget()
        {
            const std::lock_guard lock(mutex_);
            receiver_ = nullptr;
        }

        void post(Call call)
        {
            const std::lock_guard lock(mutex_);
            if (QObject* const receiver = receiver_)
                QMetaObject::invokeMethod(
                    receiver, [receiver, call = std::move(call)] { call(*receiver); }, Qt::QueuedConnection);
        }

    private:
        std::mutex mutex_;
        QObject* receiver_;
    };

    const std::shared_ptr<Target> target_;
    QMetaObject::Connection end_;
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
    relay_->post(
        [text](QObject& receiver) { QMetaObject::invokeMethod(&receiver, "onSetText", Q_ARG(std::string, text)); });
}

void LibraryProgressBase::sendRange(std::size_t range) const
{
    relay_->post([range](QObject& receiver) {
        QMetaObject::invokeMethod(&receiver, "onSetRangeInGauge", Q_ARG(size_t, range));
    });
}

void LibraryProgressBase::sendStep() const
{
    relay_->post([](QObject& receiver) { QMetaObject::invokeMethod(&receiver, "onUpdateInGauge"); });
}

void LibraryProgressBase::sendValue(std::size_t value) const
{
    relay_->post([value](QObject& receiver) {
        QMetaObject::invokeMethod(&receiver, "onSetValueInGauge", Q_ARG(size_t, value));
    });
}

void LibraryProgressBase::sendUnits(const std::string& units) const
{
    relay_->post(
        [units](QObject& receiver) { QMetaObject::invokeMethod(&receiver, "onSetUnits", Q_ARG(std::string, units)); });
}

void LibraryProgressBase::sendCatalogUpdated(const FileStringPair& paths) const
{
    relay_->post([paths](QObject& receiver) {
        QMetaObject::invokeMethod(&receiver, "onCatalogUpdatedEvent", Q_ARG(FileStringPair, paths));
    });
}

void LibraryProgressBase::sendEnd(const UpdateData& data) const
{
    relay_->post([data](QObject& receiver) {
        QMetaObject::invokeMethod(&receiver, "closeCatalogUpdateEvent",
                                  Q_ARG(const LibraryCatalogUpdate::UpdateData&, data));
    });
}

void LibraryProgressBase::sendCancelled() const
{
    relay_->post([](QObject& receiver) { QMetaObject::invokeMethod(&receiver, "onClose"); });
}
