#pragma once

#include <functional>

namespace tarnbeck {

// A piece of work, run once.
using Task = std::function<void()>;

}  // namespace tarnbeck
