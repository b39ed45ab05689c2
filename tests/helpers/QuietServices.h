// What a view reaches of the machine, with nothing behind it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "CaffeinateLaunching.h"
#include "Clipboard.h"
#include "ExternalOpener.h"

namespace tarnbeck::testing {

struct NoClipboard : Clipboard {
    void setString(std::string_view /*text*/) override {}
};

struct NoOpener : ExternalOpener {
    void openFile(std::string_view /*path*/) override {}
    void openUrl(std::string_view /*url*/) override {}
};

// "Keeps the machine awake" until the end, and does nothing.
class QuietProcess : public system_awake::CaffeinateProcess {
  public:
    const std::string& id() const override { return id_; }
    bool isRunning() const override { return true; }
    void setTerminationHandler(std::function<void()> /*handler*/) override {}
    void terminate() override {}

  private:
    const std::string id_ = "1";
};

struct QuietLauncher : system_awake::CaffeinateLaunching {
    std::variant<std::unique_ptr<system_awake::CaffeinateProcess>, system_awake::LaunchFailure>
    start(const std::vector<std::string>& /*arguments*/,
          std::optional<std::int32_t> /*boundToProcessID*/) override {
        return std::make_unique<QuietProcess>();
    }
};

}  // namespace tarnbeck::testing
