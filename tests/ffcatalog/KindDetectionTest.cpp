// Telling function catalogues from group catalogues by their bytes.
#include <gtest/gtest.h>

#include "FormulaFunction/frame/Catalogue.h"
#include "frame/CatalogueTestUtil.h"
#include "tools/ffcatalog/KindDetection.h"

using namespace ffcatalog;

namespace {

std::string Functions(int count) {
    std::string out;
    for (int i = 0; i < count; ++i) {
        SysFuncInfo f;
        f.strName = "F" + std::to_string(i);
        f.wFuncId = static_cast<uint16_t>(i);
        SysFuncParam p;
        p.strName = "Length";
        p.Default.nType = KelInteger;
        p.Default.nValue = 10;
        f.vParams.push_back(p);
        ffcatalogue::WriteFunctionRecord(f, out);
    }
    return out;
}

std::string Groups(int count) {
    std::string out;
    for (int i = 0; i < count; ++i) {
        FuncGroupInfo g;
        g.nGroupId = i;
        g.strName = "G" + std::to_string(i);
        ffcatalogue::WriteGroupRecord(g, out);
    }
    return out;
}

TEST(KindDetection, WholeCataloguesAreRecognised) {
    for (int count = 1; count <= 5; ++count) {
        EXPECT_EQ(DetectCatalogueKind(Functions(count)), CatalogueKind::Functions) << count;
        EXPECT_EQ(DetectCatalogueKind(Groups(count)), CatalogueKind::Groups) << count;
    }
}

TEST(KindDetection, EmptyFileIsAFunctionCatalogue) {
    EXPECT_EQ(DetectCatalogueKind(""), CatalogueKind::Functions);
}

TEST(KindDetection, TruncatedCataloguesGoToTheLongerAgreeingReading) {
    const std::string functions = Functions(3);
    EXPECT_EQ(DetectCatalogueKind(functions.substr(0, functions.size() - 5)), CatalogueKind::Functions);
    const std::string groups = Groups(3);
    EXPECT_EQ(DetectCatalogueKind(groups.substr(0, groups.size() - 2)), CatalogueKind::Groups);
}

TEST(KindDetection, NothingAgreeingIsATieForFunctions) {
    // One cut-off function record: neither reading has a whole agreeing record.
    const std::string one = Functions(1);
    EXPECT_EQ(DetectCatalogueKind(one.substr(0, one.size() - 1)), CatalogueKind::Functions);
    EXPECT_EQ(DetectCatalogueKind(std::string(3, '\x01')), CatalogueKind::Functions);
}

// A group text stored without its NUL reads fine as a group but does not write back
// the same; the whole file is still taken as groups when that reading covers more.
TEST(KindDetection, RecordsThatDoNotWriteBackDoNotCount) {
    const std::string odd = Bytes({0x01, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 'a',
                                   0x01, 0x00, 0x00, 0x00, 0x00});
    EXPECT_EQ(DetectCatalogueKind(odd), CatalogueKind::Functions);
    EXPECT_EQ(DetectCatalogueKind(Groups(2) + odd), CatalogueKind::Groups);
}

}  // namespace
