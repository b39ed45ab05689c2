// What Tarnbeck knows of GitHub from a repository's remotes.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnbeck::GitHubScanner {

// "owner/repo" of a remote on GitHub, in its HTTPS or its SSH form; absent for all other hosts.
// Every ".git" in the URL is dropped, not only a final one. Pure, any thread.
std::optional<std::string> parseOwnerRepo(std::string_view remoteUrl);

}  // namespace tarnbeck::GitHubScanner
