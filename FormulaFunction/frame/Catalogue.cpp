// Readers and writers of the catalogue records.
#include "FormulaFunction/frame/Catalogue.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace ffcatalogue {

namespace {

constexpr uint64_t kUnknownSize = std::numeric_limits<uint64_t>::max();

// Texts are read in steps of at most this size, so that even when the size of the
// input is unknown, what is allocated never runs far ahead of what was read.
constexpr std::size_t kTextStep = std::size_t{1} << 20;

// Files are read in blocks of this size, which makes the many small field reads cheap.
constexpr std::size_t kFileBlock = std::size_t{1} << 16;

bool ReadU8(CatalogueInput& in, uint8_t& value) { return in.Read(&value, 1); }

bool ReadU16(CatalogueInput& in, uint16_t& value) {
    unsigned char b[2];
    if (!in.Read(b, sizeof b)) return false;
    value = static_cast<uint16_t>(b[0] | (b[1] << 8));
    return true;
}

bool ReadU32(CatalogueInput& in, uint32_t& value) {
    unsigned char b[4];
    if (!in.Read(b, sizeof b)) return false;
    value = static_cast<uint32_t>(b[0]) | (static_cast<uint32_t>(b[1]) << 8) |
            (static_cast<uint32_t>(b[2]) << 16) | (static_cast<uint32_t>(b[3]) << 24);
    return true;
}

bool ReadI32(CatalogueInput& in, int32_t& value) {
    uint32_t bits;
    if (!ReadU32(in, bits)) return false;
    std::memcpy(&value, &bits, sizeof value);
    return true;
}

bool ReadDouble(CatalogueInput& in, double& value) {
    unsigned char b[8];
    if (!in.Read(b, sizeof b)) return false;
    uint64_t bits = 0;
    for (int i = 7; i >= 0; --i) bits = (bits << 8) | b[i];
    std::memcpy(&value, &bits, sizeof value);
    return true;
}

// A stored text: its length, then that many bytes, of which the text is the part
// before the first NUL. A length beyond the rest of the input is a short read.
bool ReadText(CatalogueInput& in, std::string& text) {
    uint32_t length;
    if (!ReadU32(in, length)) return false;
    if (length > in.Remaining()) return false;
    std::size_t got = 0;
    while (got < length) {
        const std::size_t step = std::min<std::size_t>(length - got, kTextStep);
        text.resize(got + step);
        if (!in.Read(&text[got], step)) return false;
        got += step;
    }
    text.resize(length);
    const void* nul = std::memchr(text.data(), '\0', length);
    if (nul != nullptr) text.resize(static_cast<std::size_t>(static_cast<const char*>(nul) - text.data()));
    return true;
}

void WriteU8(uint8_t value, std::string& out) { out.push_back(static_cast<char>(value)); }

void WriteU16(uint16_t value, std::string& out) {
    out.push_back(static_cast<char>(value & 0xFF));
    out.push_back(static_cast<char>(value >> 8));
}

void WriteU32(uint32_t value, std::string& out) {
    for (int i = 0; i < 4; ++i) out.push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
}

void WriteI32(int32_t value, std::string& out) {
    uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    WriteU32(bits, out);
}

void WriteDouble(double value, std::string& out) {
    uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    for (int i = 0; i < 8; ++i) out.push_back(static_cast<char>((bits >> (8 * i)) & 0xFF));
}

// Stores the text with its terminating NUL, the length counting that NUL.
void WriteText(const std::string& text, std::string& out) {
    WriteU32(static_cast<uint32_t>(text.size() + 1), out);
    out.append(text);
    out.push_back('\0');
}

}  // namespace

CatalogueInput::CatalogueInput(std::FILE* file)
    : file_(file), buffer_(new unsigned char[kFileBlock]), size_(kUnknownSize) {
    data_ = buffer_.get();
    if (std::fseek(file_, 0, SEEK_END) == 0) {
        const long end = std::ftell(file_);
        if (end >= 0) size_ = static_cast<uint64_t>(end);
    }
    std::rewind(file_);
}

CatalogueInput::CatalogueInput(const void* data, std::size_t size)
    : data_(static_cast<const unsigned char*>(data)), end_(size), size_(size) {}

uint64_t CatalogueInput::Remaining() const {
    if (size_ == kUnknownSize) return kUnknownSize;
    return consumed_ < size_ ? size_ - consumed_ : 0;
}

bool CatalogueInput::Refill() {
    if (file_ == nullptr) return false;
    pos_ = 0;
    end_ = std::fread(buffer_.get(), 1, kFileBlock, file_);
    return end_ > 0;
}

bool CatalogueInput::Read(void* out, std::size_t n) {
    if (n > Remaining()) return false;
    unsigned char* to = static_cast<unsigned char*>(out);
    while (n > 0) {
        if (pos_ == end_ && !Refill()) return false;
        const std::size_t step = std::min(n, end_ - pos_);
        std::memcpy(to, data_ + pos_, step);
        pos_ += step;
        to += step;
        n -= step;
        consumed_ += step;
    }
    return true;
}

bool ReadParameterEntry(CatalogueInput& in, SysFuncParam& param, uint64_t* consumed) {
    const uint64_t start = in.Consumed();
    if (!ReadU8(in, param.cFlag)) return false;
    param.Default = tagKelDataType();
    if (!ReadI32(in, param.Default.nType)) return false;
    switch (param.Default.nType) {
        case KelBool: {
            uint8_t b;
            if (!ReadU8(in, b)) return false;
            param.Default.bValue = b != 0;
            break;
        }
        case KelDouble:
            if (!ReadDouble(in, param.Default.dValue)) return false;
            break;
        case KelText:
            if (!ReadText(in, param.Default.strValue)) return false;
            break;
        case KelInteger:
            if (!ReadI32(in, param.Default.nValue)) return false;
            break;
        default:
            // Other kinds carry no stored value; the name length follows directly.
            break;
    }
    if (!ReadText(in, param.strName)) return false;
    if (consumed != nullptr) *consumed = in.Consumed() - start;
    return true;
}

bool ReadFunctionRecord(CatalogueInput& in, SysFuncInfo& record, uint64_t* consumed) {
    const uint64_t start = in.Consumed();
    record.vParams.clear();
    if (!ReadI32(in, record.nFirst) || !ReadI32(in, record.nSecond) ||
        !ReadText(in, record.strName) || !ReadText(in, record.strSecond) ||
        !ReadText(in, record.strThird))
        return false;
    int32_t count;
    if (!ReadI32(in, count)) return false;
    // A count of zero or below means no entries. The count is not trusted for
    // reserving room: a corrupt one must not allocate ahead of the entries read.
    for (int32_t i = 0; i < count; ++i) {
        record.vParams.emplace_back();
        if (!ReadParameterEntry(in, record.vParams.back(), nullptr)) return false;
    }
    if (!ReadU16(in, record.wFirst) || !ReadU16(in, record.wFuncId)) return false;
    if (consumed != nullptr) *consumed = in.Consumed() - start;
    return true;
}

bool ReadGroupRecord(CatalogueInput& in, FuncGroupInfo& record, uint64_t* consumed) {
    const uint64_t start = in.Consumed();
    if (!ReadI32(in, record.nGroupId) || !ReadText(in, record.strName) ||
        !ReadText(in, record.strSecond))
        return false;
    if (consumed != nullptr) *consumed = in.Consumed() - start;
    return true;
}

void WriteParameterEntry(const SysFuncParam& param, std::string& out) {
    WriteU8(param.cFlag, out);
    WriteI32(param.Default.nType, out);
    switch (param.Default.nType) {
        case KelBool:
            WriteU8(param.Default.bValue ? 1 : 0, out);
            break;
        case KelDouble:
            WriteDouble(param.Default.dValue, out);
            break;
        case KelText:
            WriteText(param.Default.strValue, out);
            break;
        case KelInteger:
            WriteI32(param.Default.nValue, out);
            break;
        default:
            break;
    }
    WriteText(param.strName, out);
}

void WriteFunctionRecord(const SysFuncInfo& record, std::string& out) {
    WriteI32(record.nFirst, out);
    WriteI32(record.nSecond, out);
    WriteText(record.strName, out);
    WriteText(record.strSecond, out);
    WriteText(record.strThird, out);
    WriteI32(static_cast<int32_t>(record.vParams.size()), out);
    for (const SysFuncParam& param : record.vParams) WriteParameterEntry(param, out);
    WriteU16(record.wFirst, out);
    WriteU16(record.wFuncId, out);
}

void WriteGroupRecord(const FuncGroupInfo& record, std::string& out) {
    WriteI32(record.nGroupId, out);
    WriteText(record.strName, out);
    WriteText(record.strSecond, out);
}

namespace {

// Bytes were left over when the last read stopped short of them: either it consumed
// part of a record, or the input still holds bytes it could not make a record of.
bool EndedInsideRecord(const CatalogueInput& in, uint64_t bytesRead) {
    if (in.Consumed() != bytesRead) return true;
    const uint64_t remaining = in.Remaining();
    return remaining != 0 && remaining != kUnknownSize;
}

}  // namespace

CatalogueReadResult ReadFunctionCatalogue(CatalogueInput& in, std::vector<SysFuncInfo>& list) {
    CatalogueReadResult result;
    uint64_t size = 0;
    for (;;) {
        list.emplace_back();
        if (!ReadFunctionRecord(in, list.back(), &size)) {
            list.pop_back();
            break;
        }
        ++result.records;
        result.bytesRead += size;
    }
    result.truncated = EndedInsideRecord(in, result.bytesRead);
    return result;
}

CatalogueReadResult ReadGroupCatalogue(CatalogueInput& in, std::vector<FuncGroupInfo>& list) {
    CatalogueReadResult result;
    uint64_t size = 0;
    for (;;) {
        list.emplace_back();
        if (!ReadGroupRecord(in, list.back(), &size)) {
            list.pop_back();
            break;
        }
        ++result.records;
        result.bytesRead += size;
    }
    result.truncated = EndedInsideRecord(in, result.bytesRead);
    return result;
}

}  // namespace ffcatalogue
