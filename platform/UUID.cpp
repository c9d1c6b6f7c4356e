// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/UUID.hpp"

#ifdef __APPLE__
#include <sys/random.h>
#else
#include <unistd.h>
#endif

#include "platform/FatalError.hpp"

namespace quillo {

UUID::UUID() {
    if (getentropy(bytes_.data(), bytes_.size()) != 0) {
        fatalError("the system gives no random numbers");
    }
}

}  // namespace quillo
