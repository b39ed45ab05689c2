#include "QtExternalOpener.h"

#include <QByteArray>
#include <QDesktopServices>

namespace tarnbeck {
namespace {

QByteArray bytes(std::string_view text) {
    return {text.data(), static_cast<qsizetype>(text.size())};
}

}  // namespace

QUrl fileUrl(std::string_view path) {
    return QUrl::fromEncoded("file://" + bytes(path).toPercentEncoding("/"), QUrl::StrictMode);
}

std::optional<QUrl> webUrl(std::string_view text) {
    QUrl url = QUrl::fromEncoded(bytes(text), QUrl::StrictMode);
    const bool isOfTheWeb =
        url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http");
    if (!url.isValid() || !isOfTheWeb || url.host().isEmpty()) return std::nullopt;
    return url;
}

void QtExternalOpener::openFile(std::string_view path) {
    QDesktopServices::openUrl(fileUrl(path));
}

void QtExternalOpener::openUrl(std::string_view url) {
    if (const auto address = webUrl(url)) QDesktopServices::openUrl(*address);
}

}  // namespace tarnbeck
