// For the thread sanitizer only. Qt is not built with it, so it does not see that Qt orders what comes before a
// call is queued, or its receiver moves to another thread, and what the receiver does, and what comes before a job is
// given to a pool and what the job does.
// So these ways into Qt lead through here, where the same order is told to the sanitizer in its own words. Qt has
// one lock for all that is queued to a thread, hence one place here.
#include <QCoreApplication>
#include <QEvent>
#include <QMetaObject>
#include <QObject>
#include <QRunnable>
#include <QThreadPool>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

#include <functional>
#include <utility>

namespace {

char eventQueue;

/// Qt's own function behind one that this program defines in its place.
template <typename Function>
Function* qtsOwn(const char* symbol)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, symbol));
}

bool eventComes(void**)
{
    __tsan_acquire(&eventQueue);
    return false;
}

/// A queued call. Sender and receiver both hold it, and whoever lets go of it last destroys it.
class QueuedCall : public QtPrivate::QSlotObjectBase
{
public:
    explicit QueuedCall(QSlotObjectBase* call) : QSlotObjectBase(&QueuedCall::act), call_(call) {}

private:
    static void act(int what, QSlotObjectBase* self, QObject* receiver, void** arguments, bool*)
    {
        auto* const queued = static_cast<QueuedCall*>(self);
        if (what == Call) {
            __tsan_acquire(queued);
            queued->call_->call(receiver, arguments);
            __tsan_release(queued);
        } else if (what == Destroy) {
            __tsan_acquire(queued);
            queued->call_->destroyIfLastRef();
            delete queued;
        }
    }

    QSlotObjectBase* const call_;
};

const bool watchesEvents = QInternal::registerCallback(QInternal::EventNotifyCallback, eventComes);

}  // namespace

void QCoreApplication::postEvent(QObject* receiver, QEvent* event, int priority)
{
    static auto* const original =
        qtsOwn<void(QObject*, QEvent*, int)>("_ZN16QCoreApplication9postEventEP7QObjectP6QEventi");
    __tsan_release(&eventQueue);
    original(receiver, event, priority);
}

void QObject::moveToThread(QThread* thread)
{
    static auto* const original = qtsOwn<void(QObject*, QThread*)>("_ZN7QObject12moveToThreadEP7QThread");
    __tsan_release(&eventQueue);
    original(this, thread);
}

bool QMetaObject::invokeMethodImpl(QObject* object, QtPrivate::QSlotObjectBase* slot, Qt::ConnectionType type,
                                   void* result)
{
    static auto* const original = qtsOwn<bool(QObject*, QtPrivate::QSlotObjectBase*, Qt::ConnectionType, void*)>(
        "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv");
    auto* const call = new QueuedCall(slot);
    __tsan_release(call);
    __tsan_release(&eventQueue);
    return original(object, call, type, result);
}

bool QMetaObject::invokeMethod(QObject* object, const char* member, Qt::ConnectionType type,
                               QGenericReturnArgument result, QGenericArgument a0, QGenericArgument a1,
                               QGenericArgument a2, QGenericArgument a3, QGenericArgument a4, QGenericArgument a5,
                               QGenericArgument a6, QGenericArgument a7, QGenericArgument a8, QGenericArgument a9)
{
    static auto* const original =
        qtsOwn<bool(QObject*, const char*, Qt::ConnectionType, QGenericReturnArgument, QGenericArgument,
                    QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument,
                    QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument)>(
            "_ZN11QMetaObject12invokeMethodEP7QObjectPKcN2Qt14ConnectionTypeE22QGenericReturnArgument16QGenericArgument"
            "S7_S7_S7_S7_S7_S7_S7_S7_S7_");
    __tsan_release(&eventQueue);
    return original(object, member, type, result, a0, a1, a2, a3, a4, a5, a6, a7, a8, a9);
}

void QThreadPool::start(std::function<void()> job, int priority)
{
    class Job : public QRunnable
    {
    public:
        Job(QThreadPool* pool, std::function<void()> work) : pool_(pool), work_(std::move(work)) {}

        void run() override
        {
            __tsan_acquire(this);
            work_();
            work_ = nullptr;
            __tsan_release(pool_);
        }

    private:
        QThreadPool* const pool_;
        std::function<void()> work_;
    };
    auto* const runnable = new Job(this, std::move(job));
    __tsan_release(runnable);
    start(runnable, priority);
}

bool QThreadPool::waitForDone(int milliseconds)
{
    static auto* const original = qtsOwn<bool(QThreadPool*, int)>("_ZN11QThreadPool11waitForDoneEi");
    const bool done = original(this, milliseconds);
    __tsan_acquire(this);
    return done;
}
