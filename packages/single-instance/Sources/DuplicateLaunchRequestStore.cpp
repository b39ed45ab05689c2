#include "DuplicateLaunchRequestStore.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <utility>

#include <boost/uuid/random_generator.hpp>
#include <boost/uuid/uuid_io.hpp>

namespace single_instance {
namespace {

std::string uniqueName() {
    std::string name = boost::uuids::to_string(boost::uuids::random_generator()());
    std::ranges::transform(name, name.begin(), [](char character) {
        return static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
    });
    return name;
}

// A name that begins with its only dot has no extension.
bool hasRequestExtension(const std::string& name) {
    return name.size() > 5 && name.ends_with(".json");
}

}  // namespace

std::error_code DuplicateLaunchRequestStore::enqueue(
    const DuplicateLaunchRequest& request, const SingleInstanceConfiguration& configuration,
    FileManager& fileManager) {
    const std::string folder = configuration.duplicateLaunchRequestsURL();
    if (const auto error = fileManager.createDirectory(folder)) return error;
    return fileManager.writeAtomically(folder + "/" + uniqueName() + ".json", encoded(request));
}

std::error_code DuplicateLaunchRequestStore::post(const Post& post) {
    std::error_code error;
    if (!post.request.arguments.empty() || !post.request.fileURLs.empty()) {
        error = enqueue(post.request, post.configuration, post.fileManager);
    }
    post.signals.post(post.configuration.activationSignalName);
    return error;
}

std::vector<DuplicateLaunchRequest> DuplicateLaunchRequestStore::consumePending(
    const SingleInstanceConfiguration& configuration, FileManager& fileManager) {
    const std::string folder = configuration.duplicateLaunchRequestsURL();
    const auto names = fileManager.contentsOfDirectory(folder);
    if (!names) return {};
    std::vector<DuplicateLaunchRequest> requests;
    for (const std::string& name : *names) {
        if (!hasRequestExtension(name)) continue;
        const std::string path = folder + "/" + name;
        const auto json = fileManager.contents(path);
        auto request = json ? decoded(*json) : std::nullopt;
        fileManager.removeFile(path);
        if (request) requests.push_back(*std::move(request));
    }
    std::ranges::stable_sort(requests, {}, &DuplicateLaunchRequest::createdAt);
    return requests;
}

}  // namespace single_instance
