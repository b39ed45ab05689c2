// File events that a test makes up.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "FileEvents.h"

namespace tarnbeck::testing {

class FileEventsByHand : public FileEvents {
  public:
    // One stream that was opened.
    struct Opened {
        std::vector<std::string> roots;
        std::function<void(FileEventBatch)> deliver;
        std::function<void(std::string)> report;
        std::shared_ptr<std::atomic<bool>> isUnwanted;
        std::shared_ptr<bool> isOpen = std::make_shared<bool>(true);
    };

    Result<std::unique_ptr<FileEventStream>> open(const Request& request) override {
        if (failure) return Failure{*failure};
        opened.push_back({.roots = request.roots,
                          .deliver = request.deliver,
                          .report = request.report,
                          .isUnwanted = request.isUnwanted});
        if (const auto action = whileOpening) action();
        excludes = request.excludes;
        return std::unique_ptr<FileEventStream>(std::make_unique<Stream>(opened.back().isOpen));
    }

    // A batch of the stream that was opened last.
    void deliver(std::vector<std::string> paths) { opened.back().deliver({std::move(paths)}); }
    void deliverLoss() { opened.back().deliver({.eventsWereLost = true}); }

    std::vector<Opened> opened;
    std::set<std::string, std::less<>> excludes;  // of the last request
    std::optional<std::string> failure;           // of the next opening
    std::function<void()> whileOpening;           // called in the middle of each opening

  private:
    class Stream : public FileEventStream {
      public:
        explicit Stream(std::shared_ptr<bool> isOpen) : isOpen_(std::move(isOpen)) {}
        ~Stream() override { *isOpen_ = false; }

      private:
        std::shared_ptr<bool> isOpen_;
    };
};

}  // namespace tarnbeck::testing
