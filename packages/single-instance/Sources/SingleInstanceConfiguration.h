// Who may run only once, and where copies find each other.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <variant>

namespace single_instance {

struct SingleInstancePolicy {
    // Several copies may run where the user's defaults say so.
    struct UserDefaults {
        // The Boolean stored under a key; false where there is none.
        std::function<bool(const std::string& key)> boolean;
        std::string allowMultipleInstancesKey;
    };
    struct AlwaysSingle {};
    std::variant<AlwaysSingle, UserDefaults> value;

    bool allowsMultipleInstances() const;
};

struct SingleInstanceLockLocation {
    // The user's own, which the system names.
    struct ApplicationSupport {};
    struct Directory {
        std::string url;  // an absolute path
    };
    std::variant<ApplicationSupport, Directory> value;

    std::string baseDirectory() const;
};

struct SingleInstanceConfiguration {
    struct Options {
        // Empty: that of the main bundle, or else the name of the process.
        std::string bundleIdentifier = {};
        SingleInstancePolicy policy = {};
        SingleInstanceLockLocation lockLocation = {};
        // Absent: `bundleIdentifier` and ".lock".
        std::optional<std::string> lockFileName = std::nullopt;
        // Absent: `bundleIdentifier` and ".single-instance.activate".
        std::optional<std::string> activationSignalName = std::nullopt;
    };
    explicit SingleInstanceConfiguration(Options options);

    std::string bundleIdentifier;
    SingleInstancePolicy policy;
    SingleInstanceLockLocation lockLocation;
    std::string lockFileName;
    std::string activationSignalName;

    // A folder named like the bundle lies between the base directory and the file.
    std::string lockURL() const;
    // Beside the lock.
    std::string duplicateLaunchRequestsURL() const;
};

}  // namespace single_instance
