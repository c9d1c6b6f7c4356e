// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FatalError.hpp"

#include <string_view>

namespace quillo {

namespace {

std::string describe(const std::string& message, const std::source_location& where) {
    const std::string_view path = where.file_name();
    const std::string file(path.substr(path.find_last_of('/') + 1));
    return "Fatal error: " + message + " (" + file + ":" + std::to_string(where.line()) + ")";
}

/// The text with its first letter in upper case.
std::string sentence(std::string text) {
    if (!text.empty() && text.front() >= 'a' && text.front() <= 'z') {
        text.front() = static_cast<char>(text.front() - 'a' + 'A');
    }
    return text + (text.ends_with('.') ? "" : ".");
}

}  // namespace

FatalError::FatalError(const std::string& message, const std::source_location& where,
                       const std::string& remedy)
    : std::runtime_error(describe(message, where)), message_(message), remedy_(remedy) {}

std::string FatalError::inWords() const {
    const auto words = sentence(subject_.empty() ? message_ : subject_ + ": " + message_);
    return remedy_.empty() ? words : words + " " + remedy_;
}

FatalError FatalError::about(const std::string& subject) const {
    auto error = *this;
    error.subject_ = subject;
    return error;
}

void fatalError(const std::string& message, const std::source_location& where) {
    throw FatalError(message, where);
}

void fatalError(const std::string& message, const std::string& remedy, const std::source_location& where) {
    throw FatalError(message, where, remedy);
}

std::string wordsOf(const std::exception& error) {
    const auto* fatal = dynamic_cast<const FatalError*>(&error);
    return fatal != nullptr ? fatal->inWords() : error.what();
}

OSStatus FatalErrorSlot::set(const char* message, std::source_location where) QUILLO_REALTIME {
    if (!isSet()) {
        message_ = message;
        where_ = where;
        set_.store(true, std::memory_order_release);
    }
    return kQuilloErr_FatalError;
}

bool FatalErrorSlot::isSet() const QUILLO_REALTIME {
    return set_.load(std::memory_order_acquire);
}

std::optional<FatalError> FatalErrorSlot::error() const {
    if (!isSet()) {
        return std::nullopt;
    }
    return FatalError(message_, where_);
}

void FatalErrorSlot::raise() {
    if (!isSet()) {
        return;
    }
    const char* message = message_;
    const auto where = where_;
    set_.store(false, std::memory_order_release);
    fatalError(message, where);
}

}  // namespace quillo
