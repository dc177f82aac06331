// SPDX-License-Identifier: Apache-2.0
// Tells ThreadSanitizer what Qt's locks and posted events order. Qt is built without it and locks
// by atomics of its own, which it cannot see; so the functions that this tree's code calls are put
// before those of the library.
#include <QDeadlineTimer>
#include <QMutex>
#include <QThread>
#include <QWaitCondition>

#include <dlfcn.h>

extern "C" {
void __tsan_acquire(void *address);
void __tsan_release(void *address);
}

namespace {

/** The function of the library that the one of this file stands before. */
template <typename Function>
Function behind(const char *symbol)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, symbol));
}

/** A call that another thread has asked for: what that thread did before is done. */
class OrderedCall : public QtPrivate::QSlotObjectBase
{
public:
    explicit OrderedCall(QSlotObjectBase *call)
        : QSlotObjectBase(&act)
        , m_call(call)
    {
        __tsan_release(this);
    }

private:
    static void act(int operation, QSlotObjectBase *self, QObject *receiver, void **arguments,
                    bool *)
    {
        __tsan_acquire(self);
        auto *ordered = static_cast<OrderedCall *>(self);
        if (operation == Call) {
            ordered->m_call->call(receiver, arguments);
        } else if (operation == Destroy) {
            ordered->m_call->destroyIfLastRef();
            delete ordered;
        }
    }

    QSlotObjectBase *m_call;
};

} // namespace

void QMutex::lock() QT_MUTEX_LOCK_NOEXCEPT
{
    static const auto lock = behind<void (*)(QMutex *)>("_ZN6QMutex4lockEv");
    lock(this);
    __tsan_acquire(this);
}

bool QMutex::tryLock(int timeout) QT_MUTEX_LOCK_NOEXCEPT
{
    static const auto tryLock = behind<bool (*)(QMutex *, int)>("_ZN6QMutex7tryLockEi");
    const bool isLocked = tryLock(this, timeout);
    if (isLocked)
        __tsan_acquire(this);
    return isLocked;
}

void QMutex::unlock() noexcept
{
    static const auto unlock = behind<void (*)(QMutex *)>("_ZN6QMutex6unlockEv");
    __tsan_release(this);
    unlock(this);
}

bool QWaitCondition::wait(QMutex *mutex, QDeadlineTimer deadline)
{
    static const auto wait = behind<bool (*)(QWaitCondition *, QMutex *, QDeadlineTimer)>(
        "_ZN14QWaitCondition4waitEP6QMutex14QDeadlineTimer");
    __tsan_release(mutex);
    const bool isWoken = wait(this, mutex, deadline);
    __tsan_acquire(mutex);
    return isWoken;
}

bool QWaitCondition::wait(QMutex *mutex, unsigned long milliseconds)
{
    static const auto wait = behind<bool (*)(QWaitCondition *, QMutex *, unsigned long)>(
        "_ZN14QWaitCondition4waitEP6QMutexm");
    __tsan_release(mutex);
    const bool isWoken = wait(this, mutex, milliseconds);
    __tsan_acquire(mutex);
    return isWoken;
}

// A thread of Qt is not joined; what waits for it waits for a condition of Qt's.
void QThread::start(Priority priority)
{
    static const auto start =
        behind<void (*)(QThread *, Priority)>("_ZN7QThread5startENS_8PriorityE");
    connect(
        this, &QThread::finished, this, [this] { __tsan_release(this); }, Qt::DirectConnection);
    start(this, priority);
}

bool QThread::wait(QDeadlineTimer deadline)
{
    static const auto wait =
        behind<bool (*)(QThread *, QDeadlineTimer)>("_ZN7QThread4waitE14QDeadlineTimer");
    const bool isFinished = wait(this, deadline);
    __tsan_acquire(this);
    return isFinished;
}

bool QMetaObject::invokeMethodImpl(QObject *object, QtPrivate::QSlotObjectBase *slot,
                                   Qt::ConnectionType type, void *result)
{
    static const auto invoke =
        behind<bool (*)(QObject *, QtPrivate::QSlotObjectBase *, Qt::ConnectionType, void *)>(
            "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseE"
            "N2Qt14ConnectionTypeEPv");
    return invoke(object, new OrderedCall(slot), type, result);
}
