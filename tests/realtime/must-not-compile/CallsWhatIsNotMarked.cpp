// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/RealTime.hpp"

int somewhereElse(int number);

int twice(int number) QUILLO_REALTIME {
    return 2 * somewhereElse(number);
}
