// The two catalogue files of built-in functions and of their groups: plain sequences
// of variable-length little-endian records, with no header, count or checksum.
//
// A stored text is a 32-bit length N followed by N bytes; writers store the text and
// its NUL (N = length + 1), readers keep the bytes up to the first NUL.
//
// These readers and writers are internal: the library only reads catalogues (through
// GetSysFunctionList and GetFuncGroupList); the writers serve the catalogue tool and
// the tests.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "host/KelTypes.h"

namespace ffcatalogue {

// Where records are read from: an open file or a block of memory. Every read asks
// for an exact number of bytes; fewer available is a short read and fails. The
// input knows how many bytes remain, so that a corrupt length asking for more than
// the rest of the file fails before anything is allocated for it.
class CatalogueInput {
public:
    // Reads `file` from its start, in blocks, so the file position runs ahead of what
    // was consumed. The caller keeps the file open while reading.
    explicit CatalogueInput(std::FILE* file);
    CatalogueInput(const void* data, std::size_t size);

    CatalogueInput(const CatalogueInput&) = delete;
    CatalogueInput& operator=(const CatalogueInput&) = delete;

    // Reads exactly `n` bytes into `out`; false, with an unspecified part of `out`
    // filled, when fewer remain.
    bool Read(void* out, std::size_t n);

    // Bytes consumed so far from the start.
    uint64_t Consumed() const { return consumed_; }

    // Bytes not yet consumed; UINT64_MAX when the file's size could not be measured.
    uint64_t Remaining() const;

    // Total size in bytes; UINT64_MAX when unknown.
    uint64_t Size() const { return size_; }

private:
    // Refills the buffer from the file; false at its end.
    bool Refill();

    std::FILE* file_ = nullptr;
    std::unique_ptr<unsigned char[]> buffer_;  // file reads go through it in large blocks
    const unsigned char* data_ = nullptr;      // the buffer, or the memory block read
    std::size_t pos_ = 0;                      // next byte of data_
    std::size_t end_ = 0;                      // end of the valid bytes of data_
    uint64_t size_ = 0;
    uint64_t consumed_ = 0;
};

// Record readers. Each reads the fields in file order; any short read ends the record
// with false, after which `record` holds a partial state the caller must drop. On
// success `*consumed` (when not null) gets the size of the record on file.
// The function reader empties the parameter list of `record` first, so one record
// object may be reused for a whole file; every other field is overwritten.
bool ReadFunctionRecord(CatalogueInput& in, SysFuncInfo& record, uint64_t* consumed);
bool ReadGroupRecord(CatalogueInput& in, FuncGroupInfo& record, uint64_t* consumed);

// Reads one parameter entry; its default value holds only the slot its kind names.
bool ReadParameterEntry(CatalogueInput& in, SysFuncParam& param, uint64_t* consumed);

// Record writers: append the record's exact file layout to `out`. Texts are cut at an
// embedded NUL by the reader, so only texts without one read back unchanged.
void WriteFunctionRecord(const SysFuncInfo& record, std::string& out);
void WriteGroupRecord(const FuncGroupInfo& record, std::string& out);
void WriteParameterEntry(const SysFuncParam& param, std::string& out);

// How reading a whole catalogue ended.
struct CatalogueReadResult {
    std::size_t records = 0;     // whole records appended
    uint64_t bytesRead = 0;      // bytes of those whole records
    bool truncated = false;      // bytes were left after the last whole record
};

// Appends the whole records of `in`, in file order, stopping at the first record that
// cannot be read whole. A partial last record is dropped.
CatalogueReadResult ReadFunctionCatalogue(CatalogueInput& in, std::vector<SysFuncInfo>& list);
CatalogueReadResult ReadGroupCatalogue(CatalogueInput& in, std::vector<FuncGroupInfo>& list);

// The path suffixes of the two catalogues under the installation root.
constexpr const char* kFunctionCatalogueSuffix = "\\System\\Formula\\SysFuncs.dat";
constexpr const char* kGroupCatalogueSuffix = "\\System\\Formula\\FuncGroup.dat";

}  // namespace ffcatalogue
