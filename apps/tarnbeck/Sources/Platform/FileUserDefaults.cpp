#include "FileUserDefaults.h"

#include <cmath>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <utility>

#include <boost/json/object.hpp>

#include "AtomicFile.h"
#include "Base64.h"
#include "FileSystem.h"
#include "Json.h"
#include "Paths.h"
#include "Text.h"

namespace tarnbeck {
namespace {

// What is larger was not written here.
constexpr std::size_t largestFile = std::size_t{16} << 20;

// The object in the file; absent where there is none that can be read.
std::optional<JsonObject> objectIn(const std::string& file) {
    const Result<std::string> bytes = readFile(file, largestFile);
    if (!bytes) return std::nullopt;
    Result<JsonValue> json = parsedJson(*bytes);
    if (!json || !json->is_object()) return std::nullopt;
    return std::move((*std::move(json)).as_object());
}

}  // namespace

// What the main thread and the queue share. Values are replaced, never changed, so that both can
// hold them.
class FileUserDefaults::Store {
  public:
    using Value = std::shared_ptr<const JsonValue>;

    Store(std::string file, std::function<void(std::string)> report)
        : file_(std::move(file)), report_(std::move(report)) {
        for (auto& [key, value] : objectIn(file_).value_or(JsonObject())) {
            values_[std::string(key)] = std::make_shared<const JsonValue>(std::move(value));
        }
    }

    // Null where nothing is stored.
    Value value(std::string_view key) const {
        const std::lock_guard lock(mutex_);
        const auto found = values_.find(replacingInvalidUtf8(key));
        return found == values_.end() ? nullptr : found->second;
    }

    // True when a write is to be asked for: none waits yet.
    bool set(std::string_view key, JsonValue content) {
        auto value = std::make_shared<const JsonValue>(std::move(content));
        const std::lock_guard lock(mutex_);
        Value& present = values_[replacingInvalidUtf8(key)];
        if (present && *present == *value && !lastWriteFailed_) return false;
        present.swap(value);
        changed_.insert(replacingInvalidUtf8(key));
        return !std::exchange(writeWaits_, true);
    }

    void write() {
        const auto failure = failureOfWriting(beginWriting());
        {
            const std::lock_guard lock(mutex_);
            lastWriteFailed_ = failure.has_value();
        }
        if (failure && report_) report_("Failed to save " + file_ + ": " + *failure);
    }

  private:
    struct State {
        std::map<std::string, Value, std::less<>> values;
        std::set<std::string> changed;
    };

    State beginWriting() {
        const std::lock_guard lock(mutex_);
        writeWaits_ = false;  // whoever sets from here on asks for a write of their own
        return {values_, changed_};
    }

    std::optional<std::string> failureOfWriting(const State& state) const {
        std::optional<JsonObject> object = objectIn(file_);
        const bool isWhole = object.has_value();
        if (!object) object.emplace();
        for (const auto& [key, value] : state.values) {
            // What was only read here is the file's own business, unless the file was lost.
            if (!isWhole || state.changed.contains(key)) (*object)[key] = *value;
        }
        if (auto failure = createDirectories(std::string(parentPath(file_)), 0700)) return failure;
        const std::string text =
            jsonText(JsonValue(*std::move(object)), JsonLayout::prettySortedKeys) + "\n";
        return writeFileAtomically(file_, text, 0600);
    }

    const std::string file_;
    const std::function<void(std::string)> report_;
    mutable std::mutex mutex_;
    std::map<std::string, Value, std::less<>> values_;
    std::set<std::string> changed_;  // keys that were set here
    bool writeWaits_ = false;
    bool lastWriteFailed_ = false;
};

FileUserDefaults::FileUserDefaults(std::string file, WorkQueues& queues,
                                   std::function<void(std::string)> report)
    : store_(std::make_shared<Store>(std::move(file), std::move(report))),
      queue_(queues.serial("com.tarnbeck.user-defaults")) {}

FileUserDefaults::~FileUserDefaults() {
    drain();
}

void FileUserDefaults::drain() {
    queue_->drain();
}

std::optional<bool> FileUserDefaults::boolean(std::string_view key) const {
    const auto value = store_->value(key);
    const bool* boolean = value ? value->if_bool() : nullptr;
    return boolean ? std::optional(*boolean) : std::nullopt;
}

std::optional<double> FileUserDefaults::number(std::string_view key) const {
    const auto value = store_->value(key);
    if (!value || !value->is_number()) return std::nullopt;
    return value->to_number<double>();
}

std::optional<std::string> FileUserDefaults::data(std::string_view key) const {
    const auto value = store_->value(key);
    const auto* text = value ? value->if_string() : nullptr;
    return text ? decodedBase64({text->data(), text->size()}) : std::nullopt;
}

void FileUserDefaults::setBoolean(std::string_view key, bool value) {
    if (store_->set(key, JsonValue(value))) writeSoon();
}

void FileUserDefaults::setNumber(std::string_view key, double value) {
    const auto content = std::isfinite(value) ? JsonValue(value) : JsonValue(nullptr);
    if (store_->set(key, content)) writeSoon();
}

void FileUserDefaults::setData(std::string_view key, std::string_view bytes) {
    if (store_->set(key, JsonValue(base64(bytes)))) writeSoon();
}

void FileUserDefaults::writeSoon() {
    queue_->post([store = store_] { store->write(); });
}

}  // namespace tarnbeck
