// Records to and from JSON, under their field names. Reading is strict: each value must have
// exactly the type that the field asks for (1 is no Boolean, "30" and 30.5 are no integers, 30.0
// is), and a required key that is missing or null fails. Pure; any thread.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/json/array.hpp>
#include <boost/json/monotonic_resource.hpp>
#include <boost/json/object.hpp>

#include "Dates.h"
#include "Json.h"
#include "Record.h"
#include "TextEnumeration.h"

namespace tarnbeck {

struct JsonStyle {
    enum class Absent { leftOut, asNull } absent = Absent::leftOut;
    enum class Dates { secondsSince2001, iso8601 } dates = Dates::secondsSince2001;
};

// Why a value could not be read: "updates[2].package: expected a text". Thrown inside the decoding
// only; `decodedJson` turns it into a `Failure`.
class JsonDecodingError : public std::runtime_error {
  public:
    explicit JsonDecodingError(const std::string& what) : std::runtime_error(what) {}

    JsonDecodingError within(std::string_view place) const {
        const std::string inner = what();
        const bool nested = !inner.starts_with("expected") && !inner.starts_with("is ");
        const std::string joint = !nested ? ": " : (inner.starts_with('[') ? "" : ".");
        return JsonDecodingError(std::string(place) + joint + inner);
    }
};

template <class Type>
inline constexpr bool isOptional = false;
template <class Type>
inline constexpr bool isOptional<std::optional<Type>> = true;

template <class Type>
JsonValue encodedJson(const Type& value, const JsonStyle& style = {}) {
    if constexpr (requires { value.encodedJson(style); }) {
        return value.encodedJson(style);
    } else if constexpr (Record<Type>) {
        JsonObject object;
        forEachField<Type>([&](std::string_view name, auto member) {
            JsonValue encoded = encodedJson(value.*member, style);
            if (encoded.is_null() && style.absent == JsonStyle::Absent::leftOut) return;
            object.emplace(name, std::move(encoded));
        });
        return object;
    } else if constexpr (TextEnumeration<Type>) {
        return JsonValue(rawValue(value));
    } else if constexpr (std::is_same_v<Type, Date>) {
        if (style.dates == JsonStyle::Dates::iso8601) return JsonValue(iso8601(value));
        return JsonValue(secondsSince2001(value));
    } else if constexpr (isOptional<Type>) {
        return value ? encodedJson(*value, style) : JsonValue(nullptr);
    } else if constexpr (std::is_same_v<Type, std::string>) {
        return JsonValue(std::string_view(value));
    } else if constexpr (std::is_arithmetic_v<Type>) {
        return JsonValue(value);
    } else {
        JsonArray array;
        array.reserve(value.size());
        for (const auto& element : value) array.push_back(encodedJson(element, style));
        return array;
    }
}

template <class Type>
void decodeJson(const JsonValue& json, Type& value);

namespace JsonDecoding {

inline std::optional<std::int64_t> ifInteger(const JsonValue& json) {
    if (const auto* number = json.if_int64()) return *number;
    if (const auto* number = json.if_double()) {
        constexpr double limit = 9223372036854775808.0;
        if (std::trunc(*number) == *number && *number >= -limit && *number < limit) {
            return static_cast<std::int64_t>(*number);
        }
    }
    return std::nullopt;
}

inline std::int64_t integer(const JsonValue& json) {
    if (const auto number = ifInteger(json)) return *number;
    throw JsonDecodingError("expected an integer");
}

inline double number(const JsonValue& json) {
    if (const auto* value = json.if_double()) return *value;
    if (const auto* value = json.if_int64()) return static_cast<double>(*value);
    if (const auto* value = json.if_uint64()) return static_cast<double>(*value);
    throw JsonDecodingError("expected a number");
}

inline const JsonObject& object(const JsonValue& json) {
    if (const auto* value = json.if_object()) return *value;
    throw JsonDecodingError("expected an object");
}

template <class Element>
std::vector<Element> array(const JsonValue& json) {
    const auto* values = json.if_array();
    if (!values) throw JsonDecodingError("expected an array");
    std::vector<Element> elements;
    elements.reserve(values->size());
    for (const JsonValue& each : *values) {
        try {
            decodeJson(each, elements.emplace_back());
        } catch (const JsonDecodingError& error) {
            throw error.within("[" + std::to_string(elements.size() - 1) + "]");
        }
    }
    return elements;
}

enum class Keys { required, optional };

// Reads the fields that are present into `record`. A missing or null key fails where keys are
// required and the field can't be absent; otherwise the field stays as it is.
template <Record Type>
void fields(const JsonValue& json, Type& record, Keys keys) {
    const JsonObject& source = object(json);
    forEachField<Type>([&](std::string_view name, auto member) {
        using Value = std::decay_t<decltype(record.*member)>;
        const JsonValue* found = source.if_contains(name);
        try {
            if (found && !found->is_null()) {
                decodeJson(*found, record.*member);
            } else if (keys == Keys::required && !isOptional<Value>) {
                throw JsonDecodingError(found ? "is null" : "is missing");
            }
        } catch (const JsonDecodingError& error) {
            throw error.within(name);
        }
    });
}

}  // namespace JsonDecoding

template <class Type>
void decodeJson(const JsonValue& json, Type& value) {
    if constexpr (Record<Type>) {
        JsonDecoding::fields(json, value, JsonDecoding::Keys::required);
    } else if constexpr (TextEnumeration<Type>) {
        const auto* text = json.if_string();
        const auto found = text ? fromRawValue<Type>(*text) : std::nullopt;
        if (!found) throw JsonDecodingError("expected one of the known words");
        value = *found;
    } else if constexpr (std::is_same_v<Type, Date>) {
        value = dateFromSecondsSince2001(JsonDecoding::number(json));
    } else if constexpr (isOptional<Type>) {
        if (json.is_null()) {
            value.reset();
        } else {
            decodeJson(json, value.emplace());
        }
    } else if constexpr (std::is_same_v<Type, std::string>) {
        const auto* text = json.if_string();
        if (!text) throw JsonDecodingError("expected a text");
        value.assign(text->data(), text->size());
    } else if constexpr (std::is_same_v<Type, bool>) {
        const auto* boolean = json.if_bool();
        if (!boolean) throw JsonDecodingError("expected true or false");
        value = *boolean;
    } else if constexpr (std::is_floating_point_v<Type>) {
        value = JsonDecoding::number(json);
    } else if constexpr (std::is_integral_v<Type>) {
        static_assert(std::is_same_v<Type, std::int64_t>, "integers in files are 64 bits wide");
        value = JsonDecoding::integer(json);
    } else {
        value = JsonDecoding::array<typename Type::value_type>(json);
    }
}

// The record that the bytes hold, or why they hold none.
template <class Type>
Result<Type> decodedJson(std::string_view bytes) {
    boost::json::monotonic_resource storage;
    const Result<JsonValue> json = parsedJson(bytes, &storage);
    if (!json) return Failure{json.error()};
    try {
        Type value{};
        decodeJson(*json, value);
        return value;
    } catch (const JsonDecodingError& error) {
        return Failure{error.what()};
    }
}

}  // namespace tarnbeck
