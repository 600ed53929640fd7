// The bars of the chart: price fields of the current and the next bar, the bar's
// place in the series and whether it exists.
//
// Bar indexes are compared unsigned, as 32-bit values: an index that went negative
// through a subtraction wraps to a huge number and is simply out of range.
#include "FormulaFunction/FormulaFunction.h"

#include "FormulaFunction/DerivedCaches.h"
#include "FormulaFunction/InvalidValues.h"
#include "FormulaFunction/market/RememberedProperties.h"
#include "FormulaFunction/trading/Valuation.h"

namespace {

// The field of `bar`, or the invalid numeric when there is no such bar.
inline double Field(const BarRecord* bar, double BarRecord::*field) {
    return bar ? bar->*field : ff::kInvalidNumeric;
}

// The index after `current`, wrapping like the 32-bit arithmetic of the index tests.
inline uint32_t NextIndex(int32_t current) { return static_cast<uint32_t>(current) + 1u; }

// The index `offset` bars before `current`, wrapping the same way.
inline uint32_t IndexBack(int32_t current, int32_t offset) {
    return static_cast<uint32_t>(current) - static_cast<uint32_t>(offset);
}

}  // namespace

// The series length is always the main chart's (stream 0), whatever stream the
// formula reads. A chart without streams has no bars.
int32_t CSystemFuncs::BarCount() {
    if (m_pBaseData == nullptr) return ff::kInvalidInteger;
    if (m_pBaseData->DataStreams.empty()) return 0;
    return static_cast<int32_t>(m_pBaseData->DataStreams[0].Bars.size());
}

double CSystemFuncs::Open() { return Field(CurrentStreamBar(), &BarRecord::open); }
double CSystemFuncs::O() { return Open(); }
double CSystemFuncs::High() { return Field(CurrentStreamBar(), &BarRecord::high); }
double CSystemFuncs::H() { return High(); }
double CSystemFuncs::Low() { return Field(CurrentStreamBar(), &BarRecord::low); }
double CSystemFuncs::L() { return Low(); }
double CSystemFuncs::Close() { return Field(CurrentStreamBar(), &BarRecord::close); }
double CSystemFuncs::C() { return Close(); }
double CSystemFuncs::Vol() { return Field(CurrentStreamBar(), &BarRecord::vol); }
double CSystemFuncs::V() { return Vol(); }
double CSystemFuncs::OpenInt() { return Field(CurrentStreamBar(), &BarRecord::openInt); }

double CSystemFuncs::NextOpen() {
    if (m_pBaseData == nullptr) return ff::kInvalidNumeric;
    return Field(StreamBar(NextIndex(m_pBaseData->CurrentBar)), &BarRecord::open);
}

double CSystemFuncs::NextHigh() {
    if (m_pBaseData == nullptr) return ff::kInvalidNumeric;
    return Field(StreamBar(NextIndex(m_pBaseData->CurrentBar)), &BarRecord::high);
}

double CSystemFuncs::NextLow() {
    if (m_pBaseData == nullptr) return ff::kInvalidNumeric;
    return Field(StreamBar(NextIndex(m_pBaseData->CurrentBar)), &BarRecord::low);
}

double CSystemFuncs::NextClose() {
    if (m_pBaseData == nullptr) return ff::kInvalidNumeric;
    return Field(StreamBar(NextIndex(m_pBaseData->CurrentBar)), &BarRecord::close);
}

double CSystemFuncs::NextVol() {
    if (m_pBaseData == nullptr) return ff::kInvalidNumeric;
    return Field(StreamBar(NextIndex(m_pBaseData->CurrentBar)), &BarRecord::vol);
}

double CSystemFuncs::NextOpenInt() {
    if (m_pBaseData == nullptr) return ff::kInvalidNumeric;
    return Field(StreamBar(NextIndex(m_pBaseData->CurrentBar)), &BarRecord::openInt);
}

// Bar 0 is reported as the first bar before anything else is looked at, even when
// the stream does not exist.
int32_t CSystemFuncs::BarStatus() {
    if (m_pBaseData == nullptr) return ff::kInvalidInteger;
    const int32_t current = m_pBaseData->CurrentBar;
    if (current == 0) return 0;
    if (CurrentStreamBar() == nullptr) return ff::kInvalidInteger;
    const size_t count = m_pBaseData->DataStreams[m_pBaseData->DataIndex].Bars.size();
    return static_cast<size_t>(current) == count - 1 ? 2 : 1;
}

int32_t CSystemFuncs::CurrentBar() {
    if (m_pBaseData == nullptr) return ff::kInvalidInteger;
    return m_pBaseData->CurrentBar;
}

bool CSystemFuncs::HistoryDataExist() { return CurrentStreamBar() != nullptr; }

// High and low of the bar `offset` bars before the current one; an offset beyond
// the current bar wraps to a huge index and is out of range. On bars of type 2 with
// interval 1 the high and low carry no meaning, so the close stands in for both.
double CSystemFuncs::RealHigh(int32_t offset) {
    if (m_pBaseData == nullptr) return ff::kInvalidNumeric;
    const ffmarket::RememberedProperties p(*this, Derived().Values, m_pBaseData->DataIndex);
    const bool closeOnly = fftrading::CloseStandsForHighAndLow(p.BarType(), p.BarInterval());
    const BarRecord* bar = StreamBar(IndexBack(m_pBaseData->CurrentBar, offset));
    if (bar == nullptr) return ff::kInvalidNumeric;
    return closeOnly ? bar->close : bar->high;
}

// Both answers above with the bar type and interval the call's valuation read, when
// it could; otherwise the two functions read them.
void CSystemFuncs::RealHighLow(int32_t offset, const Valuation& value, double& high, double& low) {
    const fftrading::RememberedInstrument& instrument = value.Instrument();
    if (m_pBaseData == nullptr || !instrument.closeOnlyKnown) {
        high = RealHigh(offset);
        low = RealLow(offset);
        return;
    }
    const BarRecord* bar = StreamBar(IndexBack(m_pBaseData->CurrentBar, offset));
    if (bar == nullptr) {
        high = low = ff::kInvalidNumeric;
        return;
    }
    high = instrument.closeOnly ? bar->close : bar->high;
    low = instrument.closeOnly ? bar->close : bar->low;
}

double CSystemFuncs::RealLow(int32_t offset) {
    if (m_pBaseData == nullptr) return ff::kInvalidNumeric;
    const ffmarket::RememberedProperties p(*this, Derived().Values, m_pBaseData->DataIndex);
    const bool closeOnly = fftrading::CloseStandsForHighAndLow(p.BarType(), p.BarInterval());
    const BarRecord* bar = StreamBar(IndexBack(m_pBaseData->CurrentBar, offset));
    if (bar == nullptr) return ff::kInvalidNumeric;
    return closeOnly ? bar->close : bar->low;
}
