// Telling a function catalogue from a group catalogue by content alone: neither file
// has a header, so the bytes are read both ways and the reading that fits wins.
#pragma once

#include <string>

#include "tools/ffcatalog/CatalogueSource.h"

namespace ffcatalog {

// A record agrees when writing it back gives the bytes it was read from (the writers'
// layout: each text ends in its one NUL, booleans are 0 or 1). A reading fits when
// agreeing records cover every byte. Exactly one reading fitting decides; both
// fitting (the empty file) means functions; when neither fits, the reading whose
// leading agreeing records cover more bytes wins, functions on a tie.
CatalogueKind DetectCatalogueKind(const std::string& bytes);

}  // namespace ffcatalog
