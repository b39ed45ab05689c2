// Interface state that is no setting, by key: what was open, where a window stood.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnbeck {

// A value is absent where nothing is stored, or something of another type. Main thread.
class UserDefaults {
  public:
    UserDefaults() = default;
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;
    virtual ~UserDefaults() = default;

    virtual std::optional<bool> boolean(std::string_view key) const = 0;
    virtual std::optional<double> number(std::string_view key) const = 0;
    // Bytes of any kind.
    virtual std::optional<std::string> data(std::string_view key) const = 0;
    virtual void setBoolean(std::string_view key, bool value) = 0;
    virtual void setNumber(std::string_view key, double value) = 0;
    virtual void setData(std::string_view key, std::string_view bytes) = 0;
};

}  // namespace tarnbeck
