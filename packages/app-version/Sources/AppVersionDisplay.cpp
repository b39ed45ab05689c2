#include "AppVersionDisplay.h"

#include <memory>

#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

namespace app_version {
namespace {

std::string text(const icu::UnicodeString& characters) {
    std::string result;
    return characters.toUTF8String(result);
}

std::string formatted(WallTime time, const std::string& timeZone) {
    UErrorCode status = U_ZERO_ERROR;
    icu::SimpleDateFormat format("yyyy-MM-dd HH:mm:ss", icu::Locale("en", "US", "POSIX"), status);
    if (U_FAILURE(status)) return "unknown";
    format.adoptTimeZone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(timeZone)));
    using Milliseconds = std::chrono::duration<double, std::milli>;
    icu::UnicodeString result;
    return text(format.format(Milliseconds(time.time_since_epoch()).count(), result));
}

}  // namespace

std::string AppVersionDisplay::current(const Bundle& bundle) {
    return AppVersionInfo::current(bundle).displayLabel();
}

std::string AppVersionDisplay::label(const AppVersionInfo& info, const std::string& timeZone) {
    const std::string date = info.buildDate ? formatted(*info.buildDate, timeZone) : "unknown";
    return info.shortVersion + " (" + info.buildVersion + ") • build " + date;
}

std::string AppVersionDisplay::userTimeZone() {
    const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
    icu::UnicodeString name;
    return text(zone->getID(name));
}

}  // namespace app_version
