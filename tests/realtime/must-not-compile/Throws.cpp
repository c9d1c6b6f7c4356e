// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/RealTime.hpp"

struct Odd {};

int half(int number) QUILLO_REALTIME {
    if (number % 2 != 0) {
        throw Odd();
    }
    return number / 2;
}
