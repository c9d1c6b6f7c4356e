// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

#include "platform/RealTime.hpp"

namespace quillo {

template <class Signature>
class RealTimeFunctionRef;

/// A callable that somebody else keeps alive, called on the render thread: two pointers, no ownership.
template <class Result, class... Arguments>
class RealTimeFunctionRef<Result(Arguments...)> {
public:
    template <class Callable>
        requires(!std::is_same_v<std::remove_cvref_t<Callable>, RealTimeFunctionRef>)
    RealTimeFunctionRef(Callable& callable) noexcept : target_(&callable), call_(&callTarget<Callable>) {}

    Result operator()(Arguments... arguments) const QUILLO_REALTIME {
        return call_(target_, std::forward<Arguments>(arguments)...);
    }

private:
    using Target = void*;
    using Call = Result (*)(Target, Arguments...) QUILLO_REALTIME;

    template <class Callable>
    static Result callTarget(Target target, Arguments... arguments) QUILLO_REALTIME {
        return (*static_cast<Callable*>(target))(std::forward<Arguments>(arguments)...);
    }

    Target target_;
    Call call_;
};

template <class Signature>
class RealTimeFunction;

/// A callable that the host or the editor hands over and the render thread calls. Making, copying and
/// dropping one may allocate and free; calling it does neither. A default-made one is absent.
template <class Result, class... Arguments>
class RealTimeFunction<Result(Arguments...)> {
public:
    RealTimeFunction() = default;

    template <class Callable>
        requires(!std::is_same_v<std::remove_cvref_t<Callable>, RealTimeFunction>)
    RealTimeFunction(Callable&& callable) {
        const auto target = std::make_shared<std::decay_t<Callable>>(std::forward<Callable>(callable));
        call_.emplace(*target);
        target_ = target;
    }

    /// Whether there is something to call.
    explicit operator bool() const QUILLO_REALTIME { return call_.has_value(); }

    /// Only for a function that is not absent.
    Result operator()(Arguments... arguments) const QUILLO_REALTIME {
        return (*call_)(std::forward<Arguments>(arguments)...);
    }

private:
    std::shared_ptr<void> target_;
    std::optional<RealTimeFunctionRef<Result(Arguments...)>> call_;
};

/// Lets a callable that allocates or writes stand where a real-time one is asked for. Only for programs that
/// render without a deadline, such as one that plays a file into another.
template <class Callable>
class WithoutDeadline {
public:
    explicit WithoutDeadline(Callable callable) : callable_(std::move(callable)) {}

    template <class... Arguments>
    auto operator()(Arguments&&... arguments) QUILLO_REALTIME {
        QUILLO_REALTIME_EXEMPT("the program renders files or scripts: no cycle has a deadline")
        return callable_(std::forward<Arguments>(arguments)...);
        QUILLO_REALTIME_EXEMPT_END
    }

private:
    Callable callable_;
};

}  // namespace quillo
