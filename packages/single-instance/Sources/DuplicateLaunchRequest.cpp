#include "DuplicateLaunchRequest.h"

#include <boost/json.hpp>
#include <fmt/chrono.h>
#include <unicode/unistr.h>

namespace single_instance {
namespace {

namespace json = boost::json;

std::string validText(std::string_view bytes) {
    std::string text;
    return icu::UnicodeString::fromUTF8({bytes.data(), static_cast<int>(bytes.size())})
        .toUTF8String(text);
}

json::array encodedTexts(const std::vector<std::string>& texts) {
    json::array array;
    for (const std::string& text : texts) array.emplace_back(validText(text));
    return array;
}

bool take(std::string_view& text, char character) {
    if (!text.starts_with(character)) return false;
    text.remove_prefix(1);
    return true;
}

// A number of exactly so many digits; -1 where there is none.
int takeNumber(std::string_view& text, std::size_t digits) {
    if (text.size() < digits) return -1;
    int number = 0;
    for (const char digit : text.substr(0, digits)) {
        if (digit < '0' || digit > '9') return -1;
        number = number * 10 + (digit - '0');
    }
    text.remove_prefix(digits);
    return number;
}

std::optional<std::chrono::sys_days> takeDay(std::string_view& text) {
    const int year = takeNumber(text, 4);
    if (year < 0 || !take(text, '-')) return std::nullopt;
    const int month = takeNumber(text, 2);
    if (month < 0 || !take(text, '-')) return std::nullopt;
    const int day = takeNumber(text, 2);
    if (day < 0) return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year(year),
                                           std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(day))};
    if (!date.ok()) return std::nullopt;
    return date;
}

std::optional<std::chrono::minutes> takeHoursAndMinutes(std::string_view& text) {
    const int hours = takeNumber(text, 2);
    if (hours < 0 || hours > 23 || !take(text, ':')) return std::nullopt;
    const int minutes = takeNumber(text, 2);
    if (minutes < 0 || minutes > 59) return std::nullopt;
    return std::chrono::hours(hours) + std::chrono::minutes(minutes);
}

std::optional<std::chrono::minutes> takeOffset(std::string_view& text) {
    if (take(text, 'Z')) return std::chrono::minutes(0);
    const bool isWest = take(text, '-');
    if (!isWest && !take(text, '+')) return std::nullopt;
    const auto offset = takeHoursAndMinutes(text);
    if (!offset) return std::nullopt;
    return isWest ? -*offset : *offset;
}

// In UTC: an offset can lead out of the range that the form has.
bool hasYearOfFourDigits(WallTime date) {
    const std::chrono::year_month_day day(std::chrono::floor<std::chrono::days>(date));
    return day.year() >= std::chrono::year(0) && day.year() <= std::chrono::year(9999);
}

std::optional<WallTime> decodedDate(std::string_view text) {
    const auto day = takeDay(text);
    if (!day || !take(text, 'T')) return std::nullopt;
    const auto time = takeHoursAndMinutes(text);
    if (!time || !take(text, ':')) return std::nullopt;
    const int seconds = takeNumber(text, 2);
    if (seconds < 0 || seconds > 59) return std::nullopt;
    const auto offset = takeOffset(text);
    if (!offset || !text.empty()) return std::nullopt;
    const WallTime date = WallTime(*day) + *time + std::chrono::seconds(seconds) - *offset;
    return hasYearOfFourDigits(date) ? std::optional(date) : std::nullopt;
}

std::optional<std::vector<std::string>> decodedTexts(const json::object& object, const char* key) {
    const json::value* value = object.if_contains(key);
    const json::array* array = value ? value->if_array() : nullptr;
    if (!array) return std::nullopt;
    std::vector<std::string> texts;
    for (const json::value& element : *array) {
        const json::string* text = element.if_string();
        if (!text) return std::nullopt;
        texts.emplace_back(text->data(), text->size());
    }
    return texts;
}

}  // namespace

std::string encoded(const DuplicateLaunchRequest& request) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(request.createdAt);
    const std::time_t time = seconds.time_since_epoch().count();
    return json::serialize(
        json::object{{"arguments", encodedTexts(request.arguments)},
                     {"fileURLs", encodedTexts(request.fileURLs)},
                     {"createdAt", fmt::format("{:%Y-%m-%dT%H:%M:%SZ}", fmt::gmtime(time))}});
}

std::optional<DuplicateLaunchRequest> decoded(std::string_view bytes) {
    json::error_code error;
    const json::value value = json::parse({bytes.data(), bytes.size()}, error);
    const json::object* object = error ? nullptr : value.if_object();
    if (!object) return std::nullopt;
    auto arguments = decodedTexts(*object, "arguments");
    auto fileURLs = decodedTexts(*object, "fileURLs");
    const json::value* date = object->if_contains("createdAt");
    const json::string* dateText = date ? date->if_string() : nullptr;
    if (!arguments || !fileURLs || !dateText) return std::nullopt;
    const auto createdAt = decodedDate({dateText->data(), dateText->size()});
    if (!createdAt) return std::nullopt;
    return DuplicateLaunchRequest{*std::move(arguments), *std::move(fileURLs), *createdAt};
}

}  // namespace single_instance
