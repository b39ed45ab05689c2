#include "AppVersionInfo.h"

#include <sys/stat.h>

#include "AppVersionDisplay.h"
#include "ChangeTime.h"

namespace app_version {
namespace {

std::string textUnder(const std::string& key, const Bundle& bundle) {
    const auto found = bundle.info.find(key);
    const auto* text =
        found == bundle.info.end() ? nullptr : std::get_if<std::string>(&found->second);
    return text ? *text : "0";
}

std::optional<WallTime> changeOf(const std::string& file) {
    struct stat information {};
    if (stat(file.c_str(), &information) != 0) return std::nullopt;
    const timespec time = changeTime(information);
    return WallTime(std::chrono::duration_cast<WallTime::duration>(
        std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec)));
}

}  // namespace

AppVersionInfo AppVersionInfo::current(const Bundle& bundle) {
    return {.shortVersion = textUnder("CFBundleShortVersionString", bundle),
            .buildVersion = textUnder("CFBundleVersion", bundle),
            .buildDate = changeOf(bundle.executablePath)};
}

std::string AppVersionInfo::displayLabel() const {
    return AppVersionDisplay::label(*this, AppVersionDisplay::userTimeZone());
}

}  // namespace app_version
