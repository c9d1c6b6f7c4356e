// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// The real-time contract, written in the signature.
///
/// A function marked QUILLO_REALTIME may be called on the host's render thread: it does not allocate, free,
/// block, log or throw, and neither does anything that it calls. Clang 20 and later check this at compile
/// time (`-Wfunction-effects`); every compiler sees `noexcept`.
///
///     OSStatus flush(SampleTime end) QUILLO_REALTIME;
///
/// RealtimeSanitizer watches the same functions while they run.
///
/// The only way out of both is a scope that states its reason where it stands:
///
///     QUILLO_REALTIME_EXEMPT("the queue's own lock; it lends its priority to the holder")
///     mutex_.lock();
///     QUILLO_REALTIME_EXEMPT_END
#if defined(__clang__) && __clang_major__ >= 20
#if __has_feature(realtime_sanitizer)
#include <sanitizer/rtsan_interface.h>
#define QUILLO_REALTIME_UNWATCHED const __rtsan::ScopedDisabler unwatched;
#else
#define QUILLO_REALTIME_UNWATCHED
#endif
#define QUILLO_REALTIME noexcept [[clang::nonblocking]]
#define QUILLO_REALTIME_EXEMPT(reason)                                                                       \
    _Pragma("clang diagnostic push") _Pragma("clang diagnostic ignored \"-Wfunction-effects\"") {            \
        QUILLO_REALTIME_UNWATCHED
#define QUILLO_REALTIME_EXEMPT_END                                                                           \
    }                                                                                                        \
    _Pragma("clang diagnostic pop")
#else
#define QUILLO_REALTIME noexcept
#define QUILLO_REALTIME_EXEMPT(reason) {
#define QUILLO_REALTIME_EXEMPT_END }
#endif
