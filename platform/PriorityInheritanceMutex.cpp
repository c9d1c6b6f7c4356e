// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/PriorityInheritanceMutex.hpp"

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

}  // namespace quillo
