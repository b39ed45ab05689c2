// Files, signals and a main thread, played by a test.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "DuplicateLaunchRequest.h"
#include "FileManager.h"
#include "NamedSignals.h"

namespace single_instance::testing {

inline const WallTime noon =
    std::chrono::sys_days{std::chrono::year{2026} / 3 / 1} + std::chrono::hours(12);

// One folder's files, in the order in which they came.
class PlayedFiles : public FileManager {
  public:
    std::error_code createDirectory(const std::string& path) override {
        if (!failure) madeDirectory = path;
        return failure;
    }
    std::error_code writeAtomically(const std::string& path, std::string_view bytes) override {
        if (!failure) files.emplace_back(path, bytes);
        return failure;
    }
    std::optional<std::vector<std::string>> contentsOfDirectory(const std::string& path) override {
        if (!isListed) return std::nullopt;
        std::vector<std::string> names;
        for (const auto& [file, content] : files) {
            if (file.starts_with(path + "/")) names.push_back(file.substr(path.size() + 1));
        }
        return names;
    }
    std::optional<std::string> contents(const std::string& path) override {
        for (const auto& [file, content] : files) {
            if (file == path) return content;
        }
        return std::nullopt;
    }
    std::error_code removeFile(const std::string& path) override {
        if (keepsRemoved) return std::make_error_code(std::errc::permission_denied);
        std::erase_if(files, [&](const auto& file) { return file.first == path; });
        return {};
    }

    std::vector<std::pair<std::string, std::string>> files;
    std::string madeDirectory;
    std::error_code failure;
    bool isListed = true;
    bool keepsRemoved = false;
};

class PlayedSignals : public NamedSignals {
  public:
    void post(const std::string& name) override { posted.push_back(name); }
    std::shared_ptr<void> observe(const std::string& name, std::function<void()> handler) override {
        observed.push_back(name);
        auto token = std::make_shared<std::function<void()>>(std::move(handler));
        observer_ = token;
        return token;
    }

    bool isObserved() const { return !observer_.expired(); }
    void deliver() const {
        if (const auto observer = observer_.lock()) (*observer)();
    }

    std::vector<std::string> posted;
    std::vector<std::string> observed;

  private:
    std::weak_ptr<std::function<void()>> observer_;
};

class PlayedMainThread {
  public:
    auto post() {
        return [this](std::function<void()> task) { tasks_.push_back(std::move(task)); };
    }
    void run() {
        while (!tasks_.empty()) {
            const auto task = std::move(tasks_.front());
            tasks_.pop_front();
            task();
        }
    }

  private:
    std::deque<std::function<void()>> tasks_;
};

}  // namespace single_instance::testing
