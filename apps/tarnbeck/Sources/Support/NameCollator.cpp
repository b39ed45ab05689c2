#include "NameCollator.h"

#include <cstdint>

#include <unicode/coll.h>
#include <unicode/locid.h>

namespace tarnbeck {

struct NameCollator::Implementation {
    std::unique_ptr<icu::Collator> collator;  // absent where the system's ICU data are missing
};

NameCollator::NameCollator(const std::string& locale)
    : implementation_(std::make_unique<Implementation>()) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale chosen = locale.empty() ? icu::Locale() : icu::Locale(locale.c_str());
    implementation_->collator.reset(icu::Collator::createInstance(chosen, status));
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

}  // namespace tarnbeck
