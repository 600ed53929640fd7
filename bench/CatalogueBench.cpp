// Reading a large function catalogue through the plain export, as the host does.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "FormulaFunction/FormulaFunction.h"
#include "FormulaFunction/frame/Catalogue.h"

namespace {

// A root folder holding a function catalogue of about `bytes` bytes, made of records
// of varied size with parameters of every kind; removed at exit.
class GeneratedCatalogue {
public:
    explicit GeneratedCatalogue(std::size_t bytes) {
        std::mt19937 random(12345);
        root_ = std::filesystem::temp_directory_path() /
                ("ff-bench-" + std::to_string(std::random_device()()));
        std::filesystem::create_directories(root_ / "System" / "Formula");
        std::string out;
        out.reserve(bytes + 4096);
        for (uint32_t n = 0; out.size() < bytes; ++n) {
            SysFuncInfo f;
            f.nFirst = static_cast<int32_t>(n % 40);
            f.strName = "Function" + std::to_string(n);
            f.strSecond = std::string(20 + random() % 60, 'd');
            f.strThird = std::string(random() % 40, 't');
            const int params = static_cast<int>(random() % 7);
            for (int i = 0; i < params; ++i) {
                SysFuncParam p;
                p.strName = "Param" + std::to_string(i);
                static const int32_t kinds[] = {KelBool, KelDouble, KelText, KelInteger};
                p.Default.nType = kinds[random() % 4];
                p.Default.dValue = p.Default.nType == KelDouble ? 1.5 * i : 0.0;
                p.Default.nValue = p.Default.nType == KelInteger ? i : 0;
                if (p.Default.nType == KelText) p.Default.strValue = "Close";
                f.vParams.push_back(p);
            }
            f.wFuncId = static_cast<uint16_t>(n);
            ffcatalogue::WriteFunctionRecord(f, out);
            ++records_;
        }
        std::ofstream(root_ / "System" / "Formula" / "SysFuncs.dat", std::ios::binary)
            .write(out.data(), static_cast<std::streamsize>(out.size()));
        size_ = out.size();
    }
    ~GeneratedCatalogue() {
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }
    std::string Root() const { return root_.string(); }
    std::size_t Size() const { return size_; }
    std::size_t Records() const { return records_; }

private:
    std::filesystem::path root_;
    std::size_t size_ = 0;
    std::size_t records_ = 0;
};

void BM_GetSysFunctionList10MB(benchmark::State& state) {
    static const GeneratedCatalogue catalogue(10u << 20);
    const std::string savedRoot = g_strRootPath;
    g_strRootPath = catalogue.Root();
    for (auto _ : state) {
        std::vector<SysFuncInfo> list;
        GetSysFunctionList(list);
        if (list.size() != catalogue.Records()) state.SkipWithError("catalogue not read whole");
        benchmark::DoNotOptimize(list.data());
    }
    g_strRootPath = savedRoot;
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(catalogue.Size()));
    state.counters["records"] = static_cast<double>(catalogue.Records());
}
BENCHMARK(BM_GetSysFunctionList10MB)->Unit(benchmark::kMillisecond);

}  // namespace
