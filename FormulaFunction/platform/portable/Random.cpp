// The pseudo-random generator of the host's C library on Windows: a process-wide
// linear congruential generator, kept here so that every system draws the same
// sequence from the same seed.
#include "FormulaFunction/platform/Platform.h"

namespace ffplatform {

namespace {
uint32_t g_randomState = 1;
}

void SeedRandom(uint32_t seed) { g_randomState = seed; }

int32_t NextRandom() {
    g_randomState = g_randomState * 214013u + 2531011u;  // wraps modulo 2^32
    return static_cast<int32_t>((g_randomState >> 16) & 0x7FFFu);
}

}  // namespace ffplatform
