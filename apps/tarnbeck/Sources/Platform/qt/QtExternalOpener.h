#pragma once

#include <QUrl>
#include <optional>
#include <string_view>

#include "ExternalOpener.h"

namespace tarnbeck {

class QtExternalOpener : public ExternalOpener {
  public:
    void openFile(std::string_view path) override;
    void openUrl(std::string_view url) override;
};

// The address of a file; each byte of the path that is no plain letter is kept as it is, encoded.
QUrl fileUrl(std::string_view path);

// Absent for anything but a well-formed address of the web with a host.
std::optional<QUrl> webUrl(std::string_view text);

}  // namespace tarnbeck
