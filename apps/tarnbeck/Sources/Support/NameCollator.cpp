#include "NameCollator.h"

#include <array>
#include <cstdint>
#include <vector>

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace tarnbeck {

struct NameCollator::Implementation {
    std::unique_ptr<icu::Collator> collator;  // absent where the system's ICU data are missing
};

namespace {

// A machine without a language of its own ("C", "POSIX") sorts by code points, which is nobody's
// order of names; the root locale's is the nearest to everybody's.
icu::Locale localeNamed(const std::string& name) {
    const icu::Locale locale = name.empty() ? icu::Locale() : icu::Locale(name.c_str());
    return std::string_view(locale.getVariant()) == "POSIX" ? icu::Locale::getRoot() : locale;
}

}  // namespace

NameCollator::NameCollator(const std::string& locale)
    : implementation_(std::make_unique<Implementation>()) {
    UErrorCode status = U_ZERO_ERROR;
    implementation_->collator.reset(icu::Collator::createInstance(localeNamed(locale), status));
    if (U_FAILURE(status)) {
        implementation_->collator.reset();
    } else {
        implementation_->collator->setStrength(icu::Collator::SECONDARY);
    }
}

NameCollator::~NameCollator() = default;

int NameCollator::compare(std::string_view left, std::string_view right) const {
    if (!implementation_->collator) return left.compare(right);
    UErrorCode status = U_ZERO_ERROR;
    return implementation_->collator->compareUTF8(
        icu::StringPiece(left.data(), static_cast<std::int32_t>(left.size())),
        icu::StringPiece(right.data(), static_cast<std::int32_t>(right.size())), status);
}

std::string NameCollator::sortKey(std::string_view name) const {
    if (!implementation_->collator) return std::string(name);
    const auto text = icu::UnicodeString::fromUTF8(
        icu::StringPiece(name.data(), static_cast<std::int32_t>(name.size())));
    std::array<std::uint8_t, 256> room;
    const auto capacity = static_cast<std::int32_t>(room.size());
    const std::int32_t length = implementation_->collator->getSortKey(text, room.data(), capacity);
    if (length <= capacity) return {room.begin(), room.begin() + length};
    std::vector<std::uint8_t> all(static_cast<std::size_t>(length));
    implementation_->collator->getSortKey(text, all.data(), length);
    return {all.begin(), all.end()};
}

}  // namespace tarnbeck
