// The requests that second copies leave for the first: one file each, of a unique name, so that
// nobody needs a lock. All of it blocks on the disk.
#pragma once

#include <optional>
#include <system_error>
#include <vector>

#include "DuplicateLaunchRequest.h"
#include "FileManager.h"
#include "NamedSignals.h"
#include "SingleInstanceConfiguration.h"

namespace single_instance::DuplicateLaunchRequestStore {

// Writes one file.
std::error_code enqueue(const DuplicateLaunchRequest& request,
                        const SingleInstanceConfiguration& configuration, FileManager& fileManager);

struct Post {
    const DuplicateLaunchRequest& request;
    const SingleInstanceConfiguration& configuration;
    FileManager& fileManager;
    NamedSignals& signals;
};
// Enqueues a request that asks for something, and signals in any case, also when that failed; the
// error is that of the file.
std::error_code post(const Post& post);

// The requests that wait, oldest first, those of one time in the order of the listing. Their files
// go, and so do those that can't be read: none can come back on every signal. Files of another
// extension than "json" stay.
std::vector<DuplicateLaunchRequest> consumePending(const SingleInstanceConfiguration& configuration,
                                                   FileManager& fileManager);

}  // namespace single_instance::DuplicateLaunchRequestStore
