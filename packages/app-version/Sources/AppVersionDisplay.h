// The version as people read it.
#pragma once

#include <string>

#include "AppVersionInfo.h"

namespace app_version::AppVersionDisplay {

// The label of the application in the bundle, in the user's time zone.
std::string current(const Bundle& bundle);

// "1.2 (34) • build 2026-03-01 12:00:00"; "unknown" stands in for a missing date. The time zone is
// named as in "Europe/Berlin"; one that nobody knows is UTC.
std::string label(const AppVersionInfo& info, const std::string& timeZone);

// The name of the time zone that the machine is set to.
std::string userTimeZone();

}  // namespace app_version::AppVersionDisplay
