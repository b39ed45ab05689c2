#include "Text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

namespace tarnbeck {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

bool isNewline(UChar32 character) {
    return (character >= 0x0A && character <= 0x0D) || character == 0x85 || character == 0x2028 ||
           character == 0x2029;
}

bool isWhitespaceOrNewline(UChar32 character) {
    return isNewline(character) || character == 0x09 || character == 0x20 || character == 0xA0 ||
           character == 0x1680 || (character >= 0x2000 && character <= 0x200B) ||
           character == 0x202F || character == 0x205F || character == 0x3000;
}

bool isDecimalDigit(UChar32 character) {
    if (character < 0x80) return character >= '0' && character <= '9';
    return u_charType(character) == U_DECIMAL_DIGIT_NUMBER;
}

std::int32_t length(std::string_view text) {
    return static_cast<std::int32_t>(text.size());
}

// Reads the character that begins at `position` and moves behind it; negative when it is malformed.
UChar32 nextCharacter(std::string_view text, std::int32_t& position) {
    UChar32 character = 0;
    U8_NEXT(text.data(), position, length(text), character);
    return character;
}

template <class Predicate>
std::string_view trimmingWhere(std::string_view text, Predicate isTrimmed) {
    std::int32_t begin = 0;
    while (begin < length(text)) {
        std::int32_t behind = begin;
        if (!isTrimmed(nextCharacter(text, behind))) break;
        begin = behind;
    }
    std::int32_t end = length(text);
    while (end > begin) {
        std::int32_t before = end;
        UChar32 character = 0;
        U8_PREV(text.data(), begin, before, character);
        if (!isTrimmed(character)) break;
        end = before;
    }
    return text.substr(begin, end - begin);
}

bool isAsciiWord(const char* bytes) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return (word & 0x8080808080808080ULL) == 0;
}

std::size_t cellsOf(UChar32 character) {
    if (u_getCombiningClass(character) != 0) return 0;
    const auto category = u_charType(character);
    if (category == U_NON_SPACING_MARK || category == U_ENCLOSING_MARK ||
        category == U_FORMAT_CHAR) {
        return 0;
    }
    const int width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
    return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

// Behind each user-perceived character of `text`, a byte position.
std::vector<std::size_t> characterEnds(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> characters(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    UText handle = UTEXT_INITIALIZER;
    utext_openUTF8(&handle, text.data(), length(text), &status);
    std::vector<std::size_t> ends;
    if (U_SUCCESS(status)) {
        characters->setText(&handle, status);
        characters->first();
        for (auto end = characters->next(); end != icu::BreakIterator::DONE;
             end = characters->next()) {
            ends.push_back(static_cast<std::size_t>(end));
        }
    }
    utext_close(&handle);
    return ends;
}

// Joiners are control characters in name only: they shape emoji, and words of some scripts.
bool isJoiner(UChar32 character) {
    return character == 0x200C || character == 0x200D;
}

}  // namespace

bool isValidUtf8(std::string_view bytes) {
    std::size_t position = 0;
    while (position < bytes.size()) {
        if (position + 8 <= bytes.size() && isAsciiWord(bytes.data() + position)) {
            position += 8;
            continue;
        }
        // At most four bytes from here make one character; the view keeps the offsets small
        // however large the whole is.
        const std::string_view window = bytes.substr(position, 4);
        std::int32_t behind = 0;
        if (nextCharacter(window, behind) < 0) return false;
        position += static_cast<std::size_t>(behind);
    }
    return true;
}

std::string_view decodedUtf8(std::string_view bytes) {
    if (!isValidUtf8(bytes)) return {};
    if (bytes.starts_with(byteOrderMark)) bytes.remove_prefix(byteOrderMark.size());
    return bytes;
}

std::string replacingInvalidUtf8(std::string_view bytes) {
    if (isValidUtf8(bytes)) return std::string(bytes);
    std::string text;
    std::int32_t position = 0;
    while (position < length(bytes)) {
        const std::int32_t begin = position;
        if (nextCharacter(bytes, position) < 0) {
            text += replacementCharacter;
        } else {
            text += bytes.substr(begin, position - begin);
        }
    }
    return text;
}

std::string_view trimmingNewlines(std::string_view text) {
    return trimmingWhere(text, isNewline);
}

std::string_view trimmingWhitespaceAndNewlines(std::string_view text) {
    return trimmingWhere(text, isWhitespaceOrNewline);
}

std::string_view trimmingBlanksAndTabs(std::string_view text) {
    return trimmingAnyOf(text, " \t");
}

std::string_view trimming(std::string_view text, char character) {
    return trimmingAnyOf(text, {&character, 1});
}

std::string_view trimmingAnyOf(std::string_view text, std::string_view characters) {
    const std::size_t begin = text.find_first_not_of(characters);
    if (begin == std::string_view::npos) return text.substr(0, 0);
    return text.substr(begin, text.find_last_not_of(characters) + 1 - begin);
}

std::string lowercased(std::string_view text) {
    if (std::ranges::all_of(text, [](unsigned char byte) { return byte < 0x80; })) {
        std::string lower(text);
        for (char& byte : lower) {
            if (byte >= 'A' && byte <= 'Z') byte = static_cast<char>(byte - 'A' + 'a');
        }
        return lower;
    }
    std::string lower;
    icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), length(text)))
        .toLower(icu::Locale::getRoot())
        .toUTF8String(lower);
    return lower;
}

std::string joined(const std::vector<std::string>& pieces, std::string_view separator) {
    std::string text;
    for (const std::string& piece : pieces) {
        if (&piece != &pieces.front()) text += separator;
        text += piece;
    }
    return text;
}

std::string_view takingDecimalDigits(std::string_view& text) {
    std::int32_t begin = 0;
    std::int32_t end = 0;
    for (std::int32_t position = 0; position < length(text);) {
        const std::int32_t before = position;
        if (isDecimalDigit(nextCharacter(text, position))) {
            if (begin == end) begin = before;
            end = position;
        } else if (begin != end) {
            break;
        }
    }
    const std::string_view digits = text.substr(begin, end - begin);
    text.remove_prefix(digits.empty() ? text.size() : end);
    return digits;
}

std::string_view firstCharacters(std::string_view text, std::size_t count) {
    // A character of a sensible text has few bytes; what lies far behind need not be looked at.
    constexpr std::size_t enough = 1000;
    const std::string_view window = text.substr(0, count * enough);
    const auto ends = characterEnds(window);
    if (ends.size() <= count) return window;
    return count == 0 ? text.substr(0, 0) : text.substr(0, ends[count - 1]);
}

std::string_view takingLineAtNewline(std::string_view& text) {
    const std::string_view whole = text;
    for (std::int32_t position = 0; position < length(whole);) {
        const std::int32_t end = position;
        if (!isNewline(nextCharacter(whole, position))) continue;
        text.remove_prefix(position);
        return whole.substr(0, end);
    }
    text.remove_prefix(text.size());
    return whole;
}

std::size_t displayWidth(std::string_view text) {
    std::size_t columns = 0;
    for (std::int32_t position = 0; position < length(text);) {
        const UChar32 character = nextCharacter(text, position);
        columns += character < 0 ? 1 : cellsOf(character);
    }
    return columns;
}

std::string elidedAtEnd(std::string_view text, std::size_t columns) {
    if (displayWidth(text) <= columns) return std::string(text);
    if (columns == 0) return {};
    std::size_t kept = 0;
    for (const std::size_t end : characterEnds(text)) {
        if (displayWidth(text.substr(0, end)) + 1 > columns) break;
        kept = end;
    }
    return std::string(text.substr(0, kept)) + "…";
}

std::string printable(std::string_view text) {
    std::string safe;
    safe.reserve(text.size());
    for (std::int32_t position = 0; position < length(text);) {
        const std::int32_t begin = position;
        const UChar32 character = nextCharacter(text, position);
        if (character < 0 || (u_iscntrl(character) && !isJoiner(character))) {
            safe += replacementCharacter;
        } else {
            safe += text.substr(begin, position - begin);
        }
    }
    return safe;
}

}  // namespace tarnbeck
