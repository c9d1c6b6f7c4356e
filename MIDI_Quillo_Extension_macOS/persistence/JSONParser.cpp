// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/JSONParser.hpp"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include <nlohmann/json.hpp>

#include "persistence/DecodingError.hpp"
#include "persistence/ExactInteger.hpp"

namespace quillo {

namespace {

/// Builds the value from the parser's events and keeps what went wrong.
class ValueBuilder : public nlohmann::json_sax<JSON> {
public:
    /// What stopped the parser; for text that is not JSON also the byte, from 0, at which it stopped.
    struct Failure {
        std::string reason;
        std::optional<std::size_t> offset;
    };

    [[nodiscard]] JSON takeValue() { return std::move(root_); }
    [[nodiscard]] const Failure& failure() const { return failure_; }

    bool null() override { return place(nullptr); }
    bool boolean(bool value) override { return place(value); }
    bool number_integer(std::int64_t value) override { return place(value); }
    bool number_unsigned(std::uint64_t value) override { return place(value); }
    bool number_float(double value, const std::string& text) override;
    bool string(std::string& value) override { return place(std::move(value)); }
    bool binary(JSON::binary_t& value) override { return place(std::move(value)); }
    bool start_object(std::size_t) override { return open(JSON::object()); }
    bool start_array(std::size_t) override { return open(JSON::array()); }
    bool key(std::string& value) override;
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }
    bool parse_error(std::size_t position, const std::string& lastToken,
                     const nlohmann::json::exception& error) override;

private:
    JSON& add(JSON&& value);
    bool place(JSON&& value);
    bool open(JSON&& container);
    bool close();

    JSON root_;
    std::vector<JSON*> open_;
    std::string key_;
    Failure failure_;
};

bool ValueBuilder::number_float(double value, const std::string& text) {
    const auto whole = exactInteger(text);
    if (!whole) {
        return place(value);
    }
    return std::visit([this](auto integer) { return place(integer); }, *whole);
}

bool ValueBuilder::key(std::string& value) {
    key_ = std::move(value);
    return true;
}

JSON& ValueBuilder::add(JSON&& value) {
    if (open_.empty()) {
        return root_ = std::move(value);
    }
    auto& around = *open_.back();
    if (around.is_array()) {
        return around.emplace_back(std::move(value));
    }
    return around[key_] = std::move(value);
}

bool ValueBuilder::place(JSON&& value) {
    add(std::move(value));
    return true;
}

bool ValueBuilder::open(JSON&& container) {
    if (open_.size() == maximumNesting) {
        failure_.reason = "nested deeper than " + std::to_string(maximumNesting) + " levels";
        return false;
    }
    open_.push_back(&add(std::move(container)));
    return true;
}

bool ValueBuilder::close() {
    open_.pop_back();
    return true;
}

/// The library's reason without its error number, its position, what it expected, and the token, which may be
/// of any length and may not be UTF-8.
std::string reasonOf(const nlohmann::json::exception& error) {
    constexpr int numberOverflow = 406;
    if (error.id == numberOverflow) {
        return "a number beyond the range of a double";
    }
    std::string_view text = error.what();
    constexpr std::string_view beforeReason = " - ";
    if (const auto start = text.find(beforeReason); start != std::string_view::npos) {
        text.remove_prefix(start + beforeReason.size());
    }
    return std::string(text.substr(0, text.find(';')));
}

bool ValueBuilder::parse_error(std::size_t position, const std::string&,
                               const nlohmann::json::exception& error) {
    failure_ = {reasonOf(error), position == 0 ? 0 : position - 1};
    return false;
}

std::string_view asText(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Line and column; the column alone where the text is one line.
std::string placeOf(std::string_view text, std::size_t offset) {
    const auto before = text.substr(0, offset);
    const auto lastBreak = before.rfind('\n');
    const auto column = lastBreak == std::string_view::npos ? before.size() + 1 : before.size() - lastBreak;
    const auto line = std::ranges::count(before, '\n') + 1;
    const auto inLine =
        text.find('\n') != std::string_view::npos ? "line " + std::to_string(line) + ", " : std::string();
    return inLine + "column " + std::to_string(column);
}

[[noreturn]] void failAt(std::string_view text, const ValueBuilder::Failure& failure) {
    if (!failure.offset) {
        throw DecodingError(failure.reason);
    }
    throw DecodingError("not JSON: " + placeOf(text, *failure.offset) + ": " + failure.reason);
}

/// The library takes a zero byte for the end of the text; it is no part of any JSON.
void refuseZeroByte(std::string_view text) {
    if (const auto zero = text.find('\0'); zero != std::string_view::npos) {
        failAt(text, {"a zero byte", zero});
    }
}

}  // namespace

JSON parseJSON(std::span<const std::uint8_t> bytes) {
    const auto text = asText(bytes);
    refuseZeroByte(text);
    ValueBuilder builder;
    if (!JSON::sax_parse(text, &builder)) {
        failAt(text, builder.failure());
    }
    return builder.takeValue();
}

}  // namespace quillo
