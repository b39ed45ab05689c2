#include "RegularExpression.h"

#include <cstdint>

#include <unicode/regex.h>
#include <unicode/unistr.h>

namespace tarnbeck {
namespace {

// In ICU's own unit of work, which is a fraction of a millisecond on today's machines.
constexpr std::int32_t longestSearch = 4000;

icu::UnicodeString unicode(std::string_view text) {
    return icu::UnicodeString::fromUTF8(
        icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

RegularExpression::Captures captures(const icu::RegexMatcher& matcher) {
    RegularExpression::Captures texts;
    for (std::int32_t group = 1; group <= matcher.groupCount(); ++group) {
        UErrorCode status = U_ZERO_ERROR;
        matcher.group(group, status).toUTF8String(texts.emplace_back());
    }
    return texts;
}

}  // namespace

struct RegularExpression::Pattern {
    std::unique_ptr<icu::RegexPattern> icu;

    // `text` must outlive the matcher. Null where there is no pattern.
    std::unique_ptr<icu::RegexMatcher> matcher(const icu::UnicodeString& text) const {
        if (!icu) return nullptr;
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::RegexMatcher> made(icu->matcher(text, status));
        if (U_FAILURE(status)) return nullptr;
        made->setTimeLimit(longestSearch, status);
        return made;
    }
};

RegularExpression::RegularExpression(std::string_view expression, Anchors anchors)
    : pattern_([&] {
          UErrorCode status = U_ZERO_ERROR;
          UParseError place{};
          auto pattern = std::make_unique<Pattern>();
          pattern->icu.reset(icu::RegexPattern::compile(
              unicode(expression), anchors == Anchors::lines ? UREGEX_MULTILINE : 0, place,
              status));
          if (U_FAILURE(status)) pattern->icu.reset();
          return pattern;
      }()) {}

RegularExpression::~RegularExpression() = default;

std::vector<RegularExpression::Captures> RegularExpression::allMatches(
    std::string_view text) const {
    std::vector<Captures> found;
    const icu::UnicodeString subject = unicode(text);
    const auto matcher = pattern_->matcher(subject);
    if (!matcher) return found;
    UErrorCode status = U_ZERO_ERROR;
    while (matcher->find(status) && U_SUCCESS(status)) found.push_back(captures(*matcher));
    return found;
}

std::optional<RegularExpression::Captures> RegularExpression::matchAtBeginning(
    std::string_view text) const {
    const icu::UnicodeString subject = unicode(text);
    const auto matcher = pattern_->matcher(subject);
    UErrorCode status = U_ZERO_ERROR;
    if (!matcher || !matcher->lookingAt(status) || U_FAILURE(status)) return std::nullopt;
    return captures(*matcher);
}

}  // namespace tarnbeck
