// Printing a catalogue as its text form (which `ffcatalog build` reads back) or as
// JSON. Texts are 8-bit in the host's code page; both printers escape every byte
// outside printable ASCII, so their output is plain ASCII and loses nothing.
#pragma once

#include <string>
#include <vector>

#include "host/KelTypes.h"

namespace ffcatalog {

void PrintFunctionsText(const std::vector<SysFuncInfo>& functions, std::string& out);
void PrintGroupsText(const std::vector<FuncGroupInfo>& groups, std::string& out);

void PrintFunctionsJson(const std::vector<SysFuncInfo>& functions, std::string& out);
void PrintGroupsJson(const std::vector<FuncGroupInfo>& groups, std::string& out);

// A text as a quoted token of the text form: \\ \" \n \r \t, other bytes outside
// 0x20-0x7E as \xHH.
std::string QuoteSourceText(const std::string& text);

// A text as a JSON string: each byte outside printable ASCII becomes \u00HH, the
// code point of the same number, so a reader recovers the bytes one code point each.
std::string QuoteJsonText(const std::string& text);

// The shortest decimal that reads back as the same double; "inf", "-inf" or "nan"
// for values that are not finite.
std::string FormatDouble(double value);

}  // namespace ffcatalog
