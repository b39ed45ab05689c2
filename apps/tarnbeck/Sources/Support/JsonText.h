// Records straight to compact JSON text, without values in between: for what is large and written
// often. The text is the same as `jsonText(encodedJson(value, style))`. Pure; any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "JsonCoding.h"

namespace tarnbeck {

// The pieces that all JSON text is made of; each appends to `json`.
namespace JsonText {

// In quotes; bytes that are not UTF-8 are replaced by U+FFFD.
void appendText(std::string& json, std::string_view text);
// The shortest decimal that reads back the same; null for what is no number.
void appendNumber(std::string& json, double number);
void appendNumber(std::string& json, std::int64_t number);
void appendNumber(std::string& json, std::uint64_t number);

}  // namespace JsonText

// Appends the value to `json`; false when what it appended is the null of something absent.
template <class Type>
bool appendJson(std::string& json, const Type& value, const JsonStyle& style = {});

namespace JsonText {

template <class Type>
void appendArithmetic(std::string& json, Type value) {
    if constexpr (std::is_same_v<Type, bool>) {
        json += value ? "true" : "false";
    } else if constexpr (std::is_floating_point_v<Type>) {
        appendNumber(json, static_cast<double>(value));
    } else if constexpr (std::is_signed_v<Type>) {
        appendNumber(json, static_cast<std::int64_t>(value));
    } else {
        appendNumber(json, static_cast<std::uint64_t>(value));
    }
}

template <Record Type>
void appendRecord(std::string& json, const Type& record, const JsonStyle& style) {
    json += '{';
    bool first = true;
    forEachField<Type>([&](std::string_view name, auto member) {
        const std::size_t before = json.size();
        if (!first) json += ',';
        appendText(json, name);
        json += ':';
        const bool present = appendJson(json, record.*member, style);
        if (!present && style.absent == JsonStyle::Absent::leftOut) {
            json.resize(before);
        } else {
            first = false;
        }
    });
    json += '}';
}

template <class List>
void appendList(std::string& json, const List& list, const JsonStyle& style) {
    json += '[';
    bool first = true;
    for (const auto& element : list) {
        if (!first) json += ',';
        first = false;
        appendJson(json, element, style);
    }
    json += ']';
}

}  // namespace JsonText

template <class Type>
bool appendJson(std::string& json, const Type& value, const JsonStyle& style) {
    if constexpr (requires { value.encodedJson(style); }) {
        const JsonValue encoded = value.encodedJson(style);
        json += jsonText(encoded);
        return !encoded.is_null();
    } else if constexpr (Record<Type>) {
        JsonText::appendRecord(json, value, style);
    } else if constexpr (TextEnumeration<Type>) {
        JsonText::appendText(json, rawValue(value));
    } else if constexpr (std::is_same_v<Type, Date>) {
        if (style.dates == JsonStyle::Dates::iso8601) {
            JsonText::appendText(json, iso8601(value));
        } else {
            JsonText::appendNumber(json, secondsSince2001(value));
        }
    } else if constexpr (isOptional<Type>) {
        if (value) return appendJson(json, *value, style);
        json += "null";
        return false;
    } else if constexpr (std::is_same_v<Type, std::string>) {
        JsonText::appendText(json, value);
    } else if constexpr (std::is_arithmetic_v<Type>) {
        JsonText::appendArithmetic(json, value);
    } else {
        JsonText::appendList(json, value, style);
    }
    return true;
}

template <class Type>
std::string encodedJsonText(const Type& value, const JsonStyle& style = {}) {
    std::string json;
    appendJson(json, value, style);
    return json;
}

}  // namespace tarnbeck
