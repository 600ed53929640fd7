// Detection of the kind of a catalogue file from its bytes.
#include "tools/ffcatalog/KindDetection.h"

#include <vector>

#include "FormulaFunction/frame/Catalogue.h"

namespace ffcatalog {

namespace {

struct Reading {
    uint64_t agreeing = 0;  // bytes of the leading records that write back unchanged
    bool fits = false;      // every byte belongs to such a record
};

template <typename Record, typename ReadOne, typename WriteOne>
Reading TryReading(const std::string& bytes, ReadOne readOne, WriteOne writeOne) {
    ffcatalogue::CatalogueInput in(bytes.data(), bytes.size());
    Record record;
    std::string rewritten;
    uint64_t size = 0;
    Reading reading;
    while (readOne(in, record, &size)) {
        rewritten.clear();
        writeOne(record, rewritten);
        if (rewritten.size() != size || bytes.compare(reading.agreeing, size, rewritten) != 0) break;
        reading.agreeing += size;
    }
    reading.fits = reading.agreeing == bytes.size();
    return reading;
}

}  // namespace

CatalogueKind DetectCatalogueKind(const std::string& bytes) {
    const Reading functions = TryReading<SysFuncInfo>(bytes, ffcatalogue::ReadFunctionRecord,
                                                      ffcatalogue::WriteFunctionRecord);
    const Reading groups = TryReading<FuncGroupInfo>(bytes, ffcatalogue::ReadGroupRecord,
                                                     ffcatalogue::WriteGroupRecord);
    if (functions.fits != groups.fits) return functions.fits ? CatalogueKind::Functions : CatalogueKind::Groups;
    if (functions.fits) return CatalogueKind::Functions;
    return groups.agreeing > functions.agreeing ? CatalogueKind::Groups : CatalogueKind::Functions;
}

}  // namespace ffcatalog
