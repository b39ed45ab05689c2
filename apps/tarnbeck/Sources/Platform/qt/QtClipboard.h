#pragma once

#include "Clipboard.h"

namespace tarnbeck {

class QtClipboard : public Clipboard {
  public:
    void setString(std::string_view text) override;
};

}  // namespace tarnbeck
