// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DispatchQueue.hpp"
#include "platform/RealTime.hpp"

void increase(quillo::PriorityInheritanceMutex& mutex, int& number) QUILLO_REALTIME {
    mutex.lock();
    ++number;
    mutex.unlock();
}
