#include "Json.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/string.hpp>

#include "JsonText.h"

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
                JsonText::appendNumber(text_, value.get_int64());
                return;
            case boost::json::kind::uint64:
                JsonText::appendNumber(text_, value.get_uint64());
                return;
            case boost::json::kind::double_:
                JsonText::appendNumber(text_, value.get_double());
                return;
            case boost::json::kind::string:
                JsonText::appendText(text_, value.get_string());
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
            JsonText::appendText(text_, member->key());
            text_ += pretty_ ? ": " : ":";
            write(member->value());
        });
    }

    bool pretty_;
    std::size_t depth_ = 0;
    std::string text_;
};

}  // namespace

std::string jsonText(const JsonValue& value, JsonLayout layout) {
    Writer writer(layout);
    writer.write(value);
    return writer.take();
}

}  // namespace tarnbeck
