// Tells ThreadSanitizer what Qt puts in order. The Qt of a distribution is not instrumented: what
// passes through its mutexes, the ends of its threads and its queued calls would look unordered,
// and almost every job of the window like a race.
//
// The linker sends the calls that our code makes to these functions first (qt_order.cmake has their
// list). Each says what the documentation of Qt promises, and no more, but for queued calls: a
// delivered one counts as ordered behind every call that was queued before, to whomever. So an
// access that only another object's call puts behind can be missed; one that no call does cannot.
#include <QDeadlineTimer>
#include <QEvent>
#include <QMetaObject>
#include <QMutex>
#include <QSemaphore>
#include <QThread>
#include <QWaitCondition>

#include <sanitizer/tsan_interface.h>

namespace
{

char queuedCalls = 0; // its address stands for all of them

bool onEvent(void **data)
{
    if (static_cast<const QEvent *>(data[1])->type() == QEvent::MetaCall)
        __tsan_acquire(&queuedCalls);
    return false; // the event goes on its way
}

// What a thread has done comes before whatever follows its end. Connected before anybody else can
// be, so that it is called before anybody hears of the end.
void followThread(QThread *thread)
{
    static const bool isRegistered =
        QInternal::registerCallback(QInternal::EventNotifyCallback, onEvent);
    Q_UNUSED(isRegistered)
    QObject::connect(thread, &QThread::finished, [thread] {
        __tsan_release(thread);
        __tsan_release(&queuedCalls);
    });
}

template <typename Object> bool acquireIf(bool isReached, const Object *object)
{
    if (isReached)
        __tsan_acquire(const_cast<Object *>(object));
    return isReached;
}

} // namespace

// "__wrap_NAME" is called in the place of NAME, and "__real_NAME" is NAME.
#define WRAPPED(result, name, ...)                                                                 \
    result __real_##name(__VA_ARGS__);                                                             \
    result __wrap_##name(__VA_ARGS__);                                                             \
    result __wrap_##name(__VA_ARGS__)

extern "C" {

// What Qt itself allocates, copies and frees is its own affair.
const char *__tsan_default_options();
const char *__tsan_default_options()
{
    return "ignore_noninstrumented_modules=1";
}

WRAPPED(void, _ZN7QThreadC1EP7QObject, QThread *thread, QObject *parent)
{
    __real__ZN7QThreadC1EP7QObject(thread, parent);
    followThread(thread);
}

WRAPPED(void, _ZN7QThreadC2EP7QObject, QThread *thread, QObject *parent)
{
    __real__ZN7QThreadC2EP7QObject(thread, parent);
    followThread(thread);
}

WRAPPED(bool, _ZN7QThread4waitEm, QThread *thread, unsigned long timeMs)
{
    return acquireIf(__real__ZN7QThread4waitEm(thread, timeMs), thread);
}

WRAPPED(bool, _ZN7QThread4waitE14QDeadlineTimer, QThread *thread, QDeadlineTimer deadline)
{
    return acquireIf(__real__ZN7QThread4waitE14QDeadlineTimer(thread, deadline), thread);
}

WRAPPED(bool, _ZNK7QThread9isRunningEv, const QThread *thread)
{
    return !acquireIf(!__real__ZNK7QThread9isRunningEv(thread), thread);
}

WRAPPED(bool, _ZNK7QThread10isFinishedEv, const QThread *thread)
{
    return acquireIf(__real__ZNK7QThread10isFinishedEv(thread), thread);
}

WRAPPED(void, _ZN6QMutex4lockEv, QMutex *mutex)
{
    __real__ZN6QMutex4lockEv(mutex);
    __tsan_acquire(mutex);
}

WRAPPED(void, _ZN6QMutex6unlockEv, QMutex *mutex)
{
    __tsan_release(mutex);
    __real__ZN6QMutex6unlockEv(mutex);
}

WRAPPED(void, _ZN11QBasicMutex12lockInternalEv, QBasicMutex *mutex)
{
    __real__ZN11QBasicMutex12lockInternalEv(mutex);
    __tsan_acquire(mutex);
}

WRAPPED(void, _ZN11QBasicMutex14unlockInternalEv, QBasicMutex *mutex)
{
    __tsan_release(mutex);
    __real__ZN11QBasicMutex14unlockInternalEv(mutex);
}

WRAPPED(bool, _ZN14QWaitCondition4waitEP6QMutexm, QWaitCondition *condition, QMutex *mutex,
        unsigned long timeMs)
{
    __tsan_release(mutex);
    const bool isWoken = __real__ZN14QWaitCondition4waitEP6QMutexm(condition, mutex, timeMs);
    __tsan_acquire(mutex);
    return isWoken;
}

WRAPPED(void, _ZN10QSemaphore7releaseEi, QSemaphore *semaphore, int count)
{
    __tsan_release(semaphore);
    __real__ZN10QSemaphore7releaseEi(semaphore, count);
}

WRAPPED(void, _ZN10QSemaphore7acquireEi, QSemaphore *semaphore, int count)
{
    __real__ZN10QSemaphore7acquireEi(semaphore, count);
    __tsan_acquire(semaphore);
}

WRAPPED(bool, _ZN10QSemaphore10tryAcquireEii, QSemaphore *semaphore, int count, int timeMs)
{
    return acquireIf(__real__ZN10QSemaphore10tryAcquireEii(semaphore, count, timeMs), semaphore);
}

// A signal of ours: some of what is connected to it may be queued.
WRAPPED(void, _ZN11QMetaObject8activateEP7QObjectPKS_iPPv, QObject *sender, const QMetaObject *type,
        int signal, void **arguments)
{
    __tsan_release(&queuedCalls);
    __real__ZN11QMetaObject8activateEP7QObjectPKS_iPPv(sender, type, signal, arguments);
}

// QMetaObject::invokeMethod() with a lambda.
WRAPPED(
    bool,
    _ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv,
    QObject *receiver, QtPrivate::QSlotObjectBase *slot, Qt::ConnectionType type, void *result)
{
    __tsan_release(&queuedCalls);
    return __real__ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv(
        receiver, slot, type, result);
}

} // extern "C"
