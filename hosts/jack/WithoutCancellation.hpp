// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <pthread.h>

namespace quillo {

/// Runs `body` to its end, come what may. A server's library may cancel its threads at any instruction, when
/// the server crashes or the client is closed: in our midst that would leave a lock taken for ever, and it
/// ends the whole program where it meets a function that throws nothing. So each callback of the library runs
/// in here. A cancellation that came in the meantime happens behind `body`, which is why nothing around it
/// may be `noexcept`.
///
/// Disabling it is not enough. The GNU C library sends a signal to a thread that can be cancelled, and its
/// handler then looks at the thread's type only: a thread that disables cancellation while the signal is on
/// its way is still unwound. Only of a thread whose type is deferred does the handler merely note that it is
/// to be cancelled.
template <class Body>
void withoutCancellation(Body&& body) {
    int typeBefore = PTHREAD_CANCEL_DEFERRED;
    int stateBefore = PTHREAD_CANCEL_ENABLE;
    ::pthread_setcanceltype(PTHREAD_CANCEL_DEFERRED, &typeBefore);
    ::pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &stateBefore);
    body();
    ::pthread_setcancelstate(stateBefore, nullptr);
    ::pthread_setcanceltype(typeBefore, nullptr);
}

}  // namespace quillo
