// The user's defaults in a file of their own: an object in JSON, with bytes as base64 texts.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "UserDefaults.h"
#include "WorkQueues.h"

namespace tarnbeck {

// The file is read once, when this is made; one that is missing or can't be read is empty. Writing
// happens on a queue: writes that wait become one, which changes what was set here and leaves what
// else stands in the file then, other programs' changes included. Keys that are not UTF-8 count
// with their bad bytes replaced. A number that JSON has no form for is stored as none. Main thread.
class FileUserDefaults : public UserDefaults {
  public:
    // `report` is told when the file could not be written, in words and on the queue; the next
    // write has everything again.
    FileUserDefaults(std::string file, WorkQueues& queues,
                     std::function<void(std::string)> report = nullptr);
    // Waits for what was set.
    ~FileUserDefaults() override;

    std::optional<bool> boolean(std::string_view key) const override;
    std::optional<double> number(std::string_view key) const override;
    std::optional<std::string> data(std::string_view key) const override;
    void setBoolean(std::string_view key, bool value) override;
    void setNumber(std::string_view key, double value) override;
    void setData(std::string_view key, std::string_view bytes) override;

    // Returns when all that was set so far has been written, or could not be.
    void drain();

  private:
    class Store;

    void writeSoon();

    std::shared_ptr<Store> store_;
    std::shared_ptr<SerialQueue> queue_;
};

}  // namespace tarnbeck
