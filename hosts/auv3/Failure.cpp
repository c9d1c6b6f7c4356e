// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/auv3/Failure.hpp"

#include <exception>

#include "platform/FatalError.hpp"

namespace quillo {

Failure handledFailure() {
    const NSError error{NSOSStatusErrorDomain, kAudioUnitErr_FailedInitialization};
    try {
        throw;
    } catch (const std::exception& exception) {
        return {error, wordsOf(exception)};
    } catch (...) {
        return {error, "an unknown error"};
    }
}

}  // namespace quillo
