#include "SingleInstanceConfiguration.h"

#include <utility>

#include "UserSurroundings.h"

namespace single_instance {
namespace {

std::string firstThatIsNotEmpty(std::string given) {
    if (given.empty()) given = mainBundleIdentifier();
    return given.empty() ? processName() : given;
}

}  // namespace

bool SingleInstancePolicy::allowsMultipleInstances() const {
    const auto* defaults = std::get_if<UserDefaults>(&value);
    return defaults && defaults->boolean(defaults->allowMultipleInstancesKey);
}

std::string SingleInstanceLockLocation::baseDirectory() const {
    const auto* directory = std::get_if<Directory>(&value);
    return directory ? directory->url : applicationSupportFolder();
}

SingleInstanceConfiguration::SingleInstanceConfiguration(Options options)
    : bundleIdentifier(firstThatIsNotEmpty(std::move(options.bundleIdentifier))),
      policy(std::move(options.policy)),
      lockLocation(std::move(options.lockLocation)),
      lockFileName(std::move(options.lockFileName).value_or(bundleIdentifier + ".lock")),
      activationSignalName(std::move(options.activationSignalName)
                               .value_or(bundleIdentifier + ".single-instance.activate")) {}

std::string SingleInstanceConfiguration::lockURL() const {
    return lockLocation.baseDirectory() + "/" + bundleIdentifier + "/" + lockFileName;
}

std::string SingleInstanceConfiguration::duplicateLaunchRequestsURL() const {
    return lockLocation.baseDirectory() + "/" + bundleIdentifier + "/DuplicateLaunchRequests";
}

}  // namespace single_instance
