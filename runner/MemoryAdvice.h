// Hints to the operating system about how the host uses its memory.
#pragma once

#include <cstddef>

namespace ffrunner {

// Asks for the pages of [data, data + bytes) to be backed by large pages when they
// are first written. The per-bar series of a long run are written once, front to
// back; with ordinary pages each 4 KiB of them costs a fault. Only a hint: nothing
// happens where the system has no such pages or declines.
void AdviseLargePages(void* data, size_t bytes);

}  // namespace ffrunner
