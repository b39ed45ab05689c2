// User defaults that live as long as the test.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "UserDefaults.h"

namespace tarnbeck::testing {

class InMemoryUserDefaults : public UserDefaults {
  public:
    std::optional<bool> boolean(std::string_view key) const override { return stored<bool>(key); }
    std::optional<double> number(std::string_view key) const override {
        return stored<double>(key);
    }
    std::optional<std::string> data(std::string_view key) const override {
        ++dataReadCount_;
        return stored<std::string>(key);
    }
    void setBoolean(std::string_view key, bool value) override { set(key, value); }
    void setNumber(std::string_view key, double value) override { set(key, value); }
    void setData(std::string_view key, std::string_view bytes) override {
        set(key, std::string(bytes));
    }

    // How often something was stored.
    int writeCount() const { return writeCount_; }
    // How often bytes were asked for.
    int dataReadCount() const { return dataReadCount_; }

  private:
    using Value = std::variant<bool, double, std::string>;

    template <class Type>
    std::optional<Type> stored(std::string_view key) const {
        const auto found = values_.find(key);
        if (found == values_.end()) return std::nullopt;
        const Type* value = std::get_if<Type>(&found->second);
        return value ? std::optional(*value) : std::nullopt;
    }
    void set(std::string_view key, Value value) {
        values_.insert_or_assign(std::string(key), std::move(value));
        ++writeCount_;
    }

    std::map<std::string, Value, std::less<>> values_;
    int writeCount_ = 0;
    mutable int dataReadCount_ = 0;
};

}  // namespace tarnbeck::testing
