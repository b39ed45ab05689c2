// A value, or the reason in words why there is none.
#pragma once

#include <string>
#include <utility>
#include <variant>

namespace tarnbeck {

struct Failure {
    std::string message;
};

template <class Value>
class Result {
  public:
    Result(Value value) : content_(std::move(value)) {}
    Result(Failure failure) : content_(std::move(failure)) {}

    explicit operator bool() const { return std::holds_alternative<Value>(content_); }
    // Only where there is a value.
    const Value& operator*() const& { return std::get<Value>(content_); }
    Value&& operator*() && { return std::get<Value>(std::move(content_)); }
    const Value* operator->() const { return &std::get<Value>(content_); }
    // Only where there is none.
    const std::string& error() const { return std::get<Failure>(content_).message; }

  private:
    std::variant<Value, Failure> content_;
};

}  // namespace tarnbeck
