// A pipe whose ends no child inherits, from birth. Both are invalid when the system has no more
// descriptors (`errno` says why).
#pragma once

#include "FileDescriptor.h"

namespace tarnbeck {

struct Pipe {
    FileDescriptor readEnd;
    FileDescriptor writeEnd;
};

Pipe makePipe();

}  // namespace tarnbeck
