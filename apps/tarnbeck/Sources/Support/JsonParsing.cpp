#include <algorithm>
#include <cmath>
#include <locale>
#include <sstream>
#include <utility>

#include <boost/json/basic_parser_impl.hpp>
#include <boost/json/value_stack.hpp>

#include "Json.h"

namespace tarnbeck {
namespace {

using boost::json::error_code;

constexpr std::size_t deepestNesting = 64;

// Boost's own reading of a fraction can be off in its last digit.
double nearestDouble(std::string_view digits, double approximation) {
    std::istringstream stream{std::string(digits)};
    stream.imbue(std::locale::classic());
    double nearest = 0;
    return stream >> nearest ? nearest : approximation;
}

// Builds the value out of what the parser comes across.
struct Builder {
    static constexpr std::size_t max_object_size = JsonObject::max_size();
    static constexpr std::size_t max_array_size = JsonArray::max_size();
    static constexpr std::size_t max_key_size = boost::json::string::max_size();
    static constexpr std::size_t max_string_size = boost::json::string::max_size();

    using Text = boost::json::string_view;

    bool on_document_begin(error_code& /*error*/) { return true; }
    bool on_document_end(error_code& /*error*/) { return true; }
    bool on_object_begin(error_code& /*error*/) { return true; }
    bool on_object_end(std::size_t count, error_code& /*error*/) {
        stack.push_object(count);
        return true;
    }
    bool on_array_begin(error_code& /*error*/) { return true; }
    bool on_array_end(std::size_t count, error_code& /*error*/) {
        stack.push_array(count);
        return true;
    }
    bool on_key_part(Text text, std::size_t /*size*/, error_code& /*error*/) {
        stack.push_chars(text);
        return true;
    }
    bool on_key(Text text, std::size_t /*size*/, error_code& /*error*/) {
        stack.push_key(text);
        return true;
    }
    bool on_string_part(Text text, std::size_t /*size*/, error_code& /*error*/) {
        stack.push_chars(text);
        return true;
    }
    bool on_string(Text text, std::size_t /*size*/, error_code& /*error*/) {
        stack.push_string(text);
        return true;
    }
    // Numbers come in one part, since the whole input does.
    bool on_number_part(Text /*text*/, error_code& /*error*/) { return true; }
    bool on_int64(std::int64_t number, Text /*text*/, error_code& /*error*/) {
        stack.push_int64(number);
        return true;
    }
    bool on_uint64(std::uint64_t number, Text /*text*/, error_code& /*error*/) {
        stack.push_uint64(number);
        return true;
    }
    bool on_double(double approximation, Text digits, error_code& /*error*/) {
        stack.push_double(nearestDouble(digits, approximation));
        return true;
    }
    bool on_bool(bool value, error_code& /*error*/) {
        stack.push_bool(value);
        return true;
    }
    bool on_null(error_code& /*error*/) {
        stack.push_null();
        return true;
    }
    bool on_comment_part(Text /*text*/, error_code& /*error*/) { return true; }
    bool on_comment(Text /*text*/, error_code& /*error*/) { return true; }

    boost::json::value_stack stack;
};

}  // namespace

Result<JsonValue> parsedJson(std::string_view bytes, boost::json::storage_ptr storage) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (bytes.starts_with(byteOrderMark)) bytes.remove_prefix(byteOrderMark.size());
    boost::json::parse_options options;
    options.max_depth = deepestNesting;
    boost::json::basic_parser<Builder> parser(options);
    parser.handler().stack.reset(std::move(storage));
    error_code error;
    const std::size_t read = parser.write_some(false, bytes.data(), bytes.size(), error);
    if (!error && read < bytes.size()) error = boost::json::error::extra_data;
    if (!error) return parser.handler().stack.release();
    const auto lineFeeds = std::count(bytes.begin(), bytes.begin() + read, '\n');
    return Failure{"line " + std::to_string(lineFeeds + 1) + ": " + error.message()};
}

}  // namespace tarnbeck
