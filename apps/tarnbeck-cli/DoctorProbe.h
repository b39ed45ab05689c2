// Gathering what the doctor reports on. Nothing is changed by it.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "Companion.h"
#include "DoctorFindings.h"

namespace tarnbeck::cli {

// The user's environment by name; of names that stand in it twice the first counts.
using Variables = std::map<std::string, std::string, std::less<>>;
Variables environmentVariables();

// Asks the tools, the file system and, through gh, GitHub; all of them at once, each with a
// time-out. Main thread; a progress line shows that it takes a while.
DoctorFacts gatheredFacts(Companion& companion, const Variables& variables);

}  // namespace tarnbeck::cli
