// Text is UTF-8 in byte strings. Everything here is pure and may be called from any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarnbeck {

bool isValidUtf8(std::string_view bytes);

// The text that the bytes are: without a leading byte-order mark, and empty when a single byte is
// not valid UTF-8. The result views into `bytes`.
std::string_view decodedUtf8(std::string_view bytes);

// A copy in which each byte sequence that is not UTF-8 is replaced by U+FFFD.
std::string replacingInvalidUtf8(std::string_view bytes);

// Without U+000A to U+000D, U+0085, U+2028 and U+2029 at both ends.
std::string_view trimmingNewlines(std::string_view text);
// Without newlines and Unicode blanks (zero-width space included) at both ends.
std::string_view trimmingWhitespaceAndNewlines(std::string_view text);
// Without U+0020 and U+0009 at both ends.
std::string_view trimmingBlanksAndTabs(std::string_view text);
// Without the given ASCII character at both ends.
std::string_view trimming(std::string_view text, char character);
// Without any of the given ASCII characters at both ends.
std::string_view trimmingAnyOf(std::string_view text, std::string_view characters);

// Lower case by the root locale's rules, for text that is compared and never shown.
std::string lowercased(std::string_view text);

std::string joined(const std::vector<std::string>& pieces, std::string_view separator);

// The first run of decimal digits (of any script), empty where there is none; `text` goes on behind
// it.
std::string_view takingDecimalDigits(std::string_view& text);

// The first `count` user-perceived characters; all of a text that has no more.
std::string_view firstCharacters(std::string_view text, std::size_t count);

// The text up to the first of Unicode's newline characters; `text` goes on behind that. A line that
// ends in "\r\n" is followed by an empty one.
std::string_view takingLineAtNewline(std::string_view& text);

// Columns that the text takes on a terminal with fixed cells: 2 for wide East Asian characters and
// emoji, 0 for combining marks.
std::size_t displayWidth(std::string_view text);
// The text when it fits into `columns`; otherwise its beginning, cut between user-perceived
// characters, and "…".
std::string elidedAtEnd(std::string_view text, std::size_t columns);
// A copy that is safe to print on a terminal: control characters and invalid bytes become U+FFFD.
std::string printable(std::string_view text);

// Calls `visit(piece)` for each piece of `text` between separators, leaving out empty ones.
template <class Visitor>
void forEachPiece(std::string_view text, char separator, Visitor&& visit) {
    while (!text.empty()) {
        const std::size_t end = text.find(separator);
        const std::string_view piece = text.substr(0, end);
        if (!piece.empty()) visit(piece);
        if (end == std::string_view::npos) return;
        text.remove_prefix(end + 1);
    }
}

// Lines of a tool's output: split at line feeds only, empty lines left out.
template <class Visitor>
void forEachLine(std::string_view text, Visitor&& visit) {
    forEachPiece(text, '\n', visit);
}

}  // namespace tarnbeck
