#include "CaseInsensitiveSearch.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include "Text.h"

namespace tarnbeck {
namespace {

icu::StringPiece piece(std::string_view text) {
    return {text.data(), static_cast<std::int32_t>(text.size())};
}

bool isAscii(std::string_view text) {
    unsigned char all = 0;
    for (const char byte : text) all |= static_cast<unsigned char>(byte);
    return all < 0x80;
}

// Without a branch, so that the compiler does many at a time.
char lowerAscii(char byte) {
    const auto isUpper = static_cast<unsigned char>(byte - 'A') < 26U;
    return static_cast<char>(byte | (static_cast<int>(isUpper) << 5));
}

std::string composed(const icu::Normalizer2& normalizer, std::string_view text) {
    std::string result;
    icu::StringByteSink<std::string> sink(&result);
    UErrorCode status = U_ZERO_ERROR;
    normalizer.normalizeUTF8(0, piece(text), sink, nullptr, status);
    return U_SUCCESS(status) ? result : std::string(text);
}

// The form in which texts are equal that differ in case, or in how an accent is written.
std::string folded(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* normalizer = icu::Normalizer2::getNFCInstance(status);
    if (U_FAILURE(status)) return lowercased(text);
    const std::string source = composed(*normalizer, replacingInvalidUtf8(text));
    std::string result;
    icu::StringByteSink<std::string> sink(&result);
    icu::CaseMap::utf8Fold(U_FOLD_CASE_DEFAULT, piece(source), sink, nullptr, status);
    return U_SUCCESS(status) ? composed(*normalizer, result) : source;
}

// A letter whose accent follows as a character of its own is not that letter.
bool isFollowedByAccent(std::string_view text, std::size_t end) {
    UChar32 character = 0;
    auto position = static_cast<std::int32_t>(end);
    if (end == text.size()) return false;
    U8_NEXT(text.data(), position, static_cast<std::int32_t>(text.size()), character);
    return character >= 0x300 && u_getCombiningClass(character) != 0;
}

}  // namespace

CaseInsensitiveSearch::CaseInsensitiveSearch(std::string_view query)
    : query_(folded(query)), isAscii_(isAscii(query_)) {}

bool CaseInsensitiveSearch::isIn(std::string_view text) const {
    if (query_.empty()) return false;
    if (!isAscii(text)) return isInFolded(folded(text));
    if (!isAscii_ || text.size() < query_.size()) return false;
    // Most texts are short; none of them is worth an allocation.
    std::array<char, 256> lower;
    if (text.size() > lower.size()) return isInFolded(lowercased(text));
    std::ranges::transform(text, lower.begin(), lowerAscii);
    return isInFolded({lower.data(), text.size()});
}

bool CaseInsensitiveSearch::isInFolded(std::string_view text) const {
    if (query_.empty()) return false;
    for (std::size_t at = text.find(query_); at != std::string_view::npos;
         at = text.find(query_, at + 1)) {
        if (!isFollowedByAccent(text, at + query_.size())) return true;
    }
    return false;
}

// Most texts are ASCII, and folded while they are copied.
void CaseInsensitiveSearch::appendFolded(std::string_view text, std::string& to) {
    const std::size_t begin = to.size();
    to += text;
    unsigned char all = 0;
    for (char& byte : std::span(to).subspan(begin)) {
        all |= static_cast<unsigned char>(byte);
        byte = lowerAscii(byte);
    }
    if (all < 0x80) return;
    to.resize(begin);
    to += folded(text);
}

bool CaseInsensitiveSearch::isAllOf(std::string_view text) const {
    if (!isAscii(text)) return folded(text) == query_;
    return text.size() == query_.size() && std::ranges::equal(text, query_, {}, lowerAscii);
}

}  // namespace tarnbeck
