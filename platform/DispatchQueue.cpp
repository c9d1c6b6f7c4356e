// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DispatchQueue.hpp"

namespace quillo {

PriorityInheritanceMutex::PriorityInheritanceMutex() {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_setprotocol(&attributes, PTHREAD_PRIO_INHERIT);
    if (pthread_mutex_init(&mutex_, &attributes) != 0) {
        pthread_mutex_init(&mutex_, nullptr);
    }
    pthread_mutexattr_destroy(&attributes);
}

PriorityInheritanceMutex::~PriorityInheritanceMutex() {
    pthread_mutex_destroy(&mutex_);
}

void PriorityInheritanceMutex::lock() noexcept {
    pthread_mutex_lock(&mutex_);
}

void PriorityInheritanceMutex::unlock() noexcept {
    pthread_mutex_unlock(&mutex_);
}

DispatchQueue::Barrier::Barrier(DispatchQueue& queue) : queue_(queue) {
    queue_.readers_.lock();
    queue_.barrierMutex_.lock();
    queue_.gate_.close();
}

DispatchQueue::Barrier::~Barrier() {
    queue_.gate_.open();
    queue_.barrierMutex_.unlock();
    queue_.readers_.unlock();
}

void DispatchQueue::enterBehindBarrier() QUILLO_REALTIME {
    QUILLO_REALTIME_EXEMPT("the queue's own entry: waits for a short barrier, lending it our priority")
    barrierMutex_.lock();
    while (!gate_.tryEnter()) {
    }
    barrierMutex_.unlock();
    QUILLO_REALTIME_EXEMPT_END
}

}  // namespace quillo
