// SPDX-License-Identifier: GPL-3.0-or-later
#include "commandline/CommandFailure.hpp"

#include <exception>
#include <new>
#include <ostream>

#include "platform/FatalError.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

int reportErrors(std::string_view program, std::ostream& err, const std::function<int()>& command,
                 const std::function<void()>& teach) {
    const auto report = [&](const std::exception& failure) {
        err << program << ": " << escapedLines(wordsOf(failure)) << '\n';
    };
    try {
        return command();
    } catch (const UsageError& error) {
        report(error);
        teach();
        return exitUsage;
    } catch (const CommandFailure& failure) {
        report(failure);
        return failure.status();
    } catch (const std::bad_alloc&) {
        err << program << ": there is not enough memory\n";
        return exitFatal;
    } catch (const std::exception& error) {
        report(error);
        return exitFatal;
    }
}

}  // namespace quillo
