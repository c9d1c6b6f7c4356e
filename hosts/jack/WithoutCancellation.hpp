// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <pthread.h>

namespace quillo {

/// Runs `body` to its end, come what may. A server's library may cancel its threads at any instruction, when the
/// server crashes or the client is closed: in our midst that would leave a lock taken for ever, and it ends the whole
/// program where it meets a function that throws nothing. So each callback of the library runs in here. A
/// cancellation that came in the meantime happens behind `body`, which is why nothing around it may be `noexcept`.
template <class Body>
void withoutCancellation(Body&& body) {
    int before = PTHREAD_CANCEL_ENABLE;
    ::pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before);
    body();
    ::pthread_setcancelstate(before, nullptr);
}

}  // namespace quillo
