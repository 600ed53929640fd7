// The two plain exports that hand the catalogues of built-in functions and of their
// groups to the host.
#include <cstdio>

#include "FormulaFunction/Settings.h"
#include "FormulaFunction/frame/Catalogue.h"
#include "FormulaFunction/platform/Platform.h"

namespace {

// Catalogues are opened for update although they are only read, so a catalogue that
// cannot be written (a read-only file, say) yields nothing: the list stays as it was.
std::FILE* OpenCatalogue(const char* suffix) {
    const std::string path = ffplatform::NativePath(g_strRootPath + suffix);
    return std::fopen(path.c_str(), "r+b");
}

}  // namespace

void GetSysFunctionList(std::vector<SysFuncInfo>& list) {
    std::FILE* file = OpenCatalogue(ffcatalogue::kFunctionCatalogueSuffix);
    if (file == nullptr) return;
    ffcatalogue::CatalogueInput in(file);
    ffcatalogue::ReadFunctionCatalogue(in, list);
    std::fclose(file);
}

void GetFuncGroupList(std::vector<FuncGroupInfo>& list) {
    std::FILE* file = OpenCatalogue(ffcatalogue::kGroupCatalogueSuffix);
    if (file == nullptr) return;
    ffcatalogue::CatalogueInput in(file);
    ffcatalogue::ReadGroupCatalogue(in, list);
    std::fclose(file);
}
