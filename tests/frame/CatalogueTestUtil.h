// Helpers shared by the catalogue tests: bytes written out by hand, and field-by-field
// comparison of records.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>

#include "host/KelTypes.h"

inline std::string Bytes(std::initializer_list<int> bytes) {
    std::string out;
    for (const int b : bytes) out.push_back(static_cast<char>(b));
    return out;
}

inline std::string Le32(uint32_t value) {
    return Bytes({static_cast<int>(value & 0xFF), static_cast<int>((value >> 8) & 0xFF),
                  static_cast<int>((value >> 16) & 0xFF), static_cast<int>(value >> 24)});
}

// Doubles are compared by their bits, so that -0.0 and NaN payloads count.
inline uint64_t Bits(double value) {
    uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

inline void ExpectSameParam(const SysFuncParam& a, const SysFuncParam& b) {
    EXPECT_EQ(a.cFlag, b.cFlag);
    EXPECT_EQ(a.strName, b.strName);
    EXPECT_EQ(a.Default.nType, b.Default.nType);
    EXPECT_EQ(a.Default.bValue, b.Default.bValue);
    EXPECT_EQ(Bits(a.Default.dValue), Bits(b.Default.dValue));
    EXPECT_EQ(a.Default.strValue, b.Default.strValue);
    EXPECT_EQ(a.Default.nValue, b.Default.nValue);
}

inline void ExpectSameFunction(const SysFuncInfo& a, const SysFuncInfo& b) {
    EXPECT_EQ(a.nFirst, b.nFirst);
    EXPECT_EQ(a.nSecond, b.nSecond);
    EXPECT_EQ(a.strName, b.strName);
    EXPECT_EQ(a.strSecond, b.strSecond);
    EXPECT_EQ(a.strThird, b.strThird);
    EXPECT_EQ(a.wFirst, b.wFirst);
    EXPECT_EQ(a.wFuncId, b.wFuncId);
    ASSERT_EQ(a.vParams.size(), b.vParams.size());
    for (std::size_t i = 0; i < a.vParams.size(); ++i) {
        SCOPED_TRACE("parameter " + std::to_string(i));
        ExpectSameParam(a.vParams[i], b.vParams[i]);
    }
}

inline void ExpectSameGroup(const FuncGroupInfo& a, const FuncGroupInfo& b) {
    EXPECT_EQ(a.nGroupId, b.nGroupId);
    EXPECT_EQ(a.strName, b.strName);
    EXPECT_EQ(a.strSecond, b.strSecond);
}
