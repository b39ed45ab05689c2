// What the plain records have in common. A record takes part by offering `static constexpr auto
// fields()`, a tuple of its fields with their names in declared order; hashing and JSON coding
// follow from it.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>
#include <tuple>
#include <type_traits>

namespace tarnbeck {

using Date = std::chrono::system_clock::time_point;

template <class Owner, class Value>
struct RecordField {
    std::string_view name;
    Value Owner::*member;
};

template <class Owner, class Value>
constexpr RecordField<Owner, Value> field(std::string_view name, Value Owner::*member) {
    return {name, member};
}

template <class Type>
concept Record = requires { Type::fields(); };

// Calls `visit(name, member)` for each field in declared order.
template <Record Type, class Visitor>
constexpr void forEachField(Visitor&& visit) {
    std::apply([&](const auto&... each) { (visit(each.name, each.member), ...); }, Type::fields());
}

inline std::size_t combinedHash(std::size_t seed, std::size_t next) {
    return seed ^ (next + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2));
}

template <class Type>
std::size_t hashValue(const Type& value) {
    if constexpr (Record<Type>) {
        std::size_t seed = 0;
        forEachField<Type>([&](std::string_view, auto member) {
            seed = combinedHash(seed, hashValue(value.*member));
        });
        return seed;
    } else if constexpr (std::is_same_v<Type, Date>) {
        return std::hash<Date::rep>{}(value.time_since_epoch().count());
    } else if constexpr (requires { std::hash<Type>{}(value); }) {
        return std::hash<Type>{}(value);
    } else if constexpr (requires { value.has_value(); }) {
        return value ? combinedHash(1, hashValue(*value)) : 0;
    } else {
        std::size_t seed = 0;
        for (const auto& element : value) seed = combinedHash(seed, hashValue(element));
        return seed;
    }
}

}  // namespace tarnbeck

template <tarnbeck::Record Type>
struct std::hash<Type> {
    std::size_t operator()(const Type& value) const { return tarnbeck::hashValue(value); }
};
