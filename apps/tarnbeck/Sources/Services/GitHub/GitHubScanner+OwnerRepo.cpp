#include <vector>

#include "GitHubScanner.h"
#include "Text.h"

namespace tarnbeck {
namespace {

std::optional<std::string_view> behindHost(std::string_view url) {
    for (const std::string_view host : {"github.com/", "github.com:"}) {
        const std::size_t position = url.find(host);
        if (position != std::string_view::npos) return url.substr(position + host.size());
    }
    return std::nullopt;
}

std::string withoutEach(std::string_view text, std::string_view removed) {
    std::string rest;
    while (true) {
        const std::size_t position = text.find(removed);
        rest += text.substr(0, position);
        if (position == std::string_view::npos) return rest;
        text.remove_prefix(position + removed.size());
    }
}

}  // namespace

std::optional<std::string> GitHubScanner::parseOwnerRepo(std::string_view from) {
    const auto path = behindHost(trimmingWhitespaceAndNewlines(from));
    if (!path) return std::nullopt;
    const std::string name = withoutEach(*path, ".git");
    std::vector<std::string_view> pieces;
    forEachPiece(name, '/', [&](std::string_view piece) { pieces.push_back(piece); });
    if (pieces.size() < 2) return std::nullopt;
    return std::string(pieces[0]) + "/" + std::string(pieces[1]);
}

}  // namespace tarnbeck
