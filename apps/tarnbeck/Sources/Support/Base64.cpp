#include "Base64.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace tarnbeck {
namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t noDigit = 64;

constexpr std::array<std::uint8_t, 256> digits = [] {
    std::array<std::uint8_t, 256> result{};
    result.fill(noDigit);
    for (std::size_t digit = 0; digit < alphabet.size(); ++digit) {
        result[static_cast<unsigned char>(alphabet[digit])] = static_cast<std::uint8_t>(digit);
    }
    return result;
}();

// Up to three bytes as four characters.
void appendGroup(std::string& text, std::string_view bytes) {
    std::uint32_t bits = 0;
    for (std::size_t index = 0; index < 3; ++index) {
        bits = bits << 8 | (index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : 0U);
    }
    for (std::size_t index = 0; index < 4; ++index) {
        const bool isPadding = index > bytes.size();
        text += isPadding ? '=' : alphabet[bits >> (18 - 6 * index) & 63U];
    }
}

// Up to four digits, without padding. False where they are not what a whole number of bytes gives.
bool appendBytes(std::string& bytes, std::string_view group) {
    std::uint32_t bits = 0;
    for (std::size_t index = 0; index < 4; ++index) {
        const std::uint8_t digit =
            index < group.size() ? digits[static_cast<unsigned char>(group[index])] : 0;
        if (digit == noDigit) return false;
        bits = bits << 6 | digit;
    }
    const std::size_t count = group.size() - 1;
    for (std::size_t index = 0; index < count; ++index) {
        bytes += static_cast<char>(bits >> (16 - 8 * index) & 255U);
    }
    return (bits & ((1U << (24 - 8 * count)) - 1)) == 0;
}

}  // namespace

std::string base64(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t begin = 0; begin < bytes.size(); begin += 3) {
        appendGroup(text, bytes.substr(begin, 3));
    }
    return text;
}

std::optional<std::string> decodedBase64(std::string_view text) {
    if (text.size() % 4 != 0) return std::nullopt;
    for (int padding = 0; padding < 2 && text.ends_with('='); ++padding) text.remove_suffix(1);
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3 + 2);
    for (std::size_t begin = 0; begin < text.size(); begin += 4) {
        if (!appendBytes(bytes, text.substr(begin, 4))) return std::nullopt;
    }
    return bytes;
}

}  // namespace tarnbeck
