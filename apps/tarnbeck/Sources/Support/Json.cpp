#include "Json.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <vector>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/string.hpp>

#include "Text.h"

namespace tarnbeck {
namespace {

class Writer {
  public:
    explicit Writer(JsonLayout layout) : pretty_(layout == JsonLayout::prettySortedKeys) {}

    void write(const JsonValue& value) {
        switch (value.kind()) {
            case boost::json::kind::null:
                text_ += "null";
                return;
            case boost::json::kind::bool_:
                text_ += value.get_bool() ? "true" : "false";
                return;
            case boost::json::kind::int64:
                writeNumber(value.get_int64());
                return;
            case boost::json::kind::uint64:
                writeNumber(value.get_uint64());
                return;
            case boost::json::kind::double_:
                writeDouble(value.get_double());
                return;
            case boost::json::kind::string:
                writeString(value.get_string());
                return;
            case boost::json::kind::array:
                writeArray(value.get_array());
                return;
            case boost::json::kind::object:
                writeObject(value.get_object());
                return;
        }
    }

    std::string take() { return std::move(text_); }

  private:
    template <class Number>
    void writeNumber(Number number) {
        std::array<char, 32> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        text_.append(digits.data(), end);
    }

    // JSON has no word for what is not a number.
    void writeDouble(double number) {
        if (std::isfinite(number)) {
            writeNumber(number);
        } else {
            text_ += "null";
        }
    }

    void writeString(std::string_view string) {
        text_ += boost::json::serialize(
            boost::json::string_view(isValidUtf8(string) ? string : replacement(string)));
    }

    std::string_view replacement(std::string_view string) {
        replaced_ = replacingInvalidUtf8(string);
        return replaced_;
    }

    void breakLine() {
        if (!pretty_) return;
        text_ += '\n';
        text_.append(2 * depth_, ' ');
    }

    template <class Elements, class WriteElement>
    void writeContainer(char opening, char closing, const Elements& elements,
                        WriteElement writeElement) {
        text_ += opening;
        ++depth_;
        bool first = true;
        for (const auto& element : elements) {
            if (!first) text_ += ',';
            first = false;
            breakLine();
            writeElement(element);
        }
        --depth_;
        if (!first) breakLine();
        text_ += closing;
    }

    void writeArray(const JsonArray& array) {
        writeContainer('[', ']', array, [this](const JsonValue& element) { write(element); });
    }

    void writeObject(const JsonObject& object) {
        std::vector<const boost::json::key_value_pair*> members;
        for (const auto& member : object) members.push_back(&member);
        if (pretty_) {
            std::sort(members.begin(), members.end(), [](const auto* left, const auto* right) {
                return std::string_view(left->key()) < std::string_view(right->key());
            });
        }
        writeContainer('{', '}', members, [this](const auto* member) {
            writeString(member->key());
            text_ += pretty_ ? ": " : ":";
            write(member->value());
        });
    }

    bool pretty_;
    std::size_t depth_ = 0;
    std::string text_;
    std::string replaced_;
};

}  // namespace

std::string jsonText(const JsonValue& value, JsonLayout layout) {
    Writer writer(layout);
    writer.write(value);
    return writer.take();
}

}  // namespace tarnbeck
