// SPDX-License-Identifier: GPL-3.0-or-later
#include <vector>

#include "platform/RealTime.hpp"

void keep(std::vector<int>& numbers, int number) QUILLO_REALTIME {
    numbers.push_back(number);
}
