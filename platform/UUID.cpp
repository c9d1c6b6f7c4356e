// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/UUID.hpp"

#ifdef __APPLE__
#include <sys/random.h>
#else
#include <unistd.h>
#endif

#include <string_view>

#include "platform/FatalError.hpp"

namespace quillo {

UUID::UUID() {
    if (getentropy(bytes_.data(), bytes_.size()) != 0) {
        fatalError("the system gives no random numbers");
    }
    bytes_[6] = static_cast<std::uint8_t>((bytes_[6] & 0x0FU) | 0x40U);  // version 4
    bytes_[8] = static_cast<std::uint8_t>((bytes_[8] & 0x3FU) | 0x80U);  // the variant of RFC 4122
}

std::string UUID::text() const {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (std::size_t index = 0; index < bytes_.size(); ++index) {
        if (index == 4 || index == 6 || index == 8 || index == 10) {
            text += '-';
        }
        text += digits[bytes_[index] >> 4U];
        text += digits[bytes_[index] & 0x0FU];
    }
    return text;
}

}  // namespace quillo
