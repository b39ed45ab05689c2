// A descriptor that tells when one file may have been written, made, or replaced by another of its
// name: for whoever follows a file as it grows. One thread at a time.
#pragma once

#include <memory>
#include <string>

#include "Result.h"

namespace tarnbeck {

class FileChangeEvent {
  public:
    FileChangeEvent() = default;
    FileChangeEvent(const FileChangeEvent&) = delete;
    FileChangeEvent& operator=(const FileChangeEvent&) = delete;
    virtual ~FileChangeEvent() = default;

    // The folder must be there, the file need not. The system's words where it can't be told.
    static Result<std::unique_ptr<FileChangeEvent>> open(const std::string& path);

    // Readable (to `poll`) when something has happened since the last `rearm`, perhaps to another
    // file of the folder.
    virtual int descriptor() const = 0;

    // Forgets what has happened so far. Whatever happens to the file from this call on makes the
    // descriptor readable, so that one who looks at the file only afterwards misses nothing. False
    // when the folder itself has gone: then nothing comes any more.
    virtual bool rearm() = 0;
};

}  // namespace tarnbeck
