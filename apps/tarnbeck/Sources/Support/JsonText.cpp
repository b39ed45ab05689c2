#include "JsonText.h"

#include <array>
#include <charconv>
#include <cmath>

#include <boost/json/serialize.hpp>

#include "Text.h"

namespace tarnbeck {
namespace {

// Whether the text stands in JSON as it is. No early end, so that the compiler takes many bytes at
// a time.
bool isPlain(std::string_view text) {
    bool special = false;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        special |= byte < 0x20 || byte >= 0x80 || byte == '"' || byte == '\\';
    }
    return !special;
}

template <class Number>
void appendDigits(std::string& json, Number number) {
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    json.append(digits.data(), end);
}

}  // namespace

void JsonText::appendText(std::string& json, std::string_view text) {
    if (isPlain(text)) {
        json += '"';
        json += text;
        json += '"';
    } else if (isValidUtf8(text)) {
        json += boost::json::serialize(boost::json::string_view(text));
    } else {
        json += boost::json::serialize(boost::json::string_view(replacingInvalidUtf8(text)));
    }
}

void JsonText::appendNumber(std::string& json, double number) {
    if (std::isfinite(number)) {
        appendDigits(json, number);
    } else {
        json += "null";
    }
}

void JsonText::appendNumber(std::string& json, std::int64_t number) {
    appendDigits(json, number);
}

void JsonText::appendNumber(std::string& json, std::uint64_t number) {
    appendDigits(json, number);
}

}  // namespace tarnbeck
