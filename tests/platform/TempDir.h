// The temporary folder of the platform tests, and helpers to put and read raw bytes
// with the C library alone.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "support/TempFolder.h"

namespace fftest {

using TempDir = ::TempFolder;

inline void PutBytes(const std::string& path, const std::string& bytes) {
    std::FILE* f = std::fopen(path.c_str(), "wb");
    ASSERT_NE(f, nullptr) << path;
    ASSERT_EQ(std::fwrite(bytes.data(), 1, bytes.size(), f), bytes.size());
    std::fclose(f);
}

inline std::string GetBytes(const std::string& path) {
    std::string out;
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (f == nullptr) return "<missing>";
    char buf[4096];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) out.append(buf, n);
    std::fclose(f);
    return out;
}

}  // namespace fftest
