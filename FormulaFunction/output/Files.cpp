// Text files a formula appends lines to and deletes. The name is used as the formula
// gives it, with no folder put in front.
#include <cstdio>

#include "FormulaFunction/FormulaFunction.h"

#include "FormulaFunction/platform/Platform.h"

// Appends one line and its newline in a single write, in text mode, creating the
// file when it is missing. The line is taken up to its first NUL, as a C string.
bool CSystemFuncs::FileAppend(const std::string& fileName, const std::string& line) {
    std::FILE* file = std::fopen(ffplatform::NativePath(fileName).c_str(), "a+t");
    if (file == nullptr) return false;
    std::string text(line.c_str());
    text += '\n';
    std::fseek(file, 0, SEEK_END);
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
    return true;
}

bool CSystemFuncs::FileDelete(const std::string& fileName) {
    return ffplatform::RemoveFile(ffplatform::NativePath(fileName));
}
