// The hand-editable text form of a catalogue, which `ffcatalog build` turns into a
// catalogue file and `ffcatalog dump` prints. README.md beside this file describes it.
#pragma once

#include <string>
#include <vector>

#include "host/KelTypes.h"

namespace ffcatalog {

enum class CatalogueKind { Unknown, Functions, Groups };

// "functions" or "groups"; "unknown" for Unknown.
const char* KindName(CatalogueKind kind);

struct CatalogueSource {
    CatalogueKind kind = CatalogueKind::Unknown;  // Unknown only for a source without records
    std::vector<SysFuncInfo> functions;
    std::vector<FuncGroupInfo> groups;
};

// Parses the whole text of a source. `expected` is the kind asked for on the command
// line, or Unknown to take the kind of the first record. On a malformed source returns
// false and sets `error` to "SOURCENAME:LINE: reason".
bool ParseCatalogueSource(const std::string& text, const std::string& sourceName,
                          CatalogueKind expected, CatalogueSource& out, std::string& error);

}  // namespace ffcatalog
