// SPDX-License-Identifier: GPL-3.0-or-later
// The functions that may wait for another thread, defined in the program and therefore taken by all its
// libraries, each in front of the system's own.
#include <dlfcn.h>
#include <pthread.h>

#include <atomic>
#include <ctime>

#include "realtime/CallCounter.hpp"

/// Counts, and calls the function of the same name that `function` stands in front of. A static variable that
/// is initialised when it is needed may take a lock.
#define QUILLO_COUNT_LOCK(function, ...)                                                                     \
    static constinit std::atomic<void*> system = nullptr;                                                    \
    if (system == nullptr) {                                                                                 \
        system = ::dlsym(RTLD_NEXT, #function);                                                              \
    }                                                                                                        \
    quillo::test::CallCounter::countLock();                                                                  \
    return reinterpret_cast<decltype(&function)>(system.load())(__VA_ARGS__)

extern "C" {

int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
    QUILLO_COUNT_LOCK(pthread_mutex_lock, mutex);
}

int pthread_mutex_trylock(pthread_mutex_t* mutex) noexcept {
    QUILLO_COUNT_LOCK(pthread_mutex_trylock, mutex);
}

int pthread_mutex_timedlock(pthread_mutex_t* mutex, const timespec* until) noexcept {
    QUILLO_COUNT_LOCK(pthread_mutex_timedlock, mutex, until);
}

int pthread_mutex_clocklock(pthread_mutex_t* mutex, clockid_t clock, const timespec* until) noexcept {
    QUILLO_COUNT_LOCK(pthread_mutex_clocklock, mutex, clock, until);
}

int pthread_rwlock_rdlock(pthread_rwlock_t* lock) noexcept {
    QUILLO_COUNT_LOCK(pthread_rwlock_rdlock, lock);
}

int pthread_rwlock_tryrdlock(pthread_rwlock_t* lock) noexcept {
    QUILLO_COUNT_LOCK(pthread_rwlock_tryrdlock, lock);
}

int pthread_rwlock_wrlock(pthread_rwlock_t* lock) noexcept {
    QUILLO_COUNT_LOCK(pthread_rwlock_wrlock, lock);
}

int pthread_rwlock_trywrlock(pthread_rwlock_t* lock) noexcept {
    QUILLO_COUNT_LOCK(pthread_rwlock_trywrlock, lock);
}

int pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t* mutex) {
    QUILLO_COUNT_LOCK(pthread_cond_wait, condition, mutex);
}

int pthread_cond_timedwait(pthread_cond_t* condition, pthread_mutex_t* mutex, const timespec* until) {
    QUILLO_COUNT_LOCK(pthread_cond_timedwait, condition, mutex, until);
}

int pthread_cond_clockwait(pthread_cond_t* condition, pthread_mutex_t* mutex, clockid_t clock,
                           const timespec* until) {
    QUILLO_COUNT_LOCK(pthread_cond_clockwait, condition, mutex, clock, until);
}

}  // extern "C"
