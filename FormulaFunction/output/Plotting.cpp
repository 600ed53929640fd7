// Plot storage of the formulas linked to a strategy: one series for kind 6, named
// series for kind 4, and two-value bar plots for kind 5. The functions only store
// values for the host to draw.
#include "FormulaFunction/FormulaFunction.h"

#include "FormulaFunction/output/OutputValues.h"
#include "FormulaFunction/platform/Platform.h"

namespace {

using ffoutput::kDefaultColour;
using ff::kInvalidNumeric;
using ff::kInvalidString;

void SetColour(PlotPoint& point, int32_t colour) {
    point.bColourSet = colour != kDefaultColour;
    point.nColour = colour;
}

// A series is sized by the bars of the main stream. It only ever grows: bars are
// added to a live chart, and records the host already holds are never dropped.
template <typename Record>
void GrowTo(std::vector<Record>& series, size_t barCount) {
    if (series.size() < barCount) series.resize(barCount);
}

void ClearFlags(PlotPoint& point) {
    point.bBoolSet = false;
    point.bNumericSet = false;
    point.bTextSet = false;
    point.bColourSet = false;
}

}  // namespace

// Decides the bar a plot call addresses: `barsAgo` bars before the current one, and
// inside the bars of the main stream. The "N/A" name addresses no bar at all.
bool CSystemFuncs::PlotTargetBar(const std::string& name, int32_t barsAgo, size_t& index) {
    if (m_pBaseData == nullptr || ffoutput::IsInvalidText(name)) return false;
    const int64_t target = static_cast<int64_t>(CurrentBar()) - barsAgo;
    const int64_t barCount = BarCount();
    if (target < 0 || target >= barCount) return false;
    index = static_cast<size_t>(target);
    return true;
}

// The position of `name` among the kind-4 plots, matched without regard to case in
// the host's code page; -1 when the formula never plotted it.
int32_t CSystemFuncs::FindPlotName(const std::string& name) const {
    const std::vector<std::string>& names = m_pBaseData->PlotNames;
    for (size_t i = 0; i < names.size(); ++i)
        if (ffplatform::CompareNoCaseGbk(names[i], name) == 0) return static_cast<int32_t>(i);
    return -1;
}

// The record a store into plot `name` writes: bar `barsAgo` of the single series
// (kind 6) or of the named series (kind 4), which is created on first use. Null
// when the bar is out of range or the formula kind keeps no such series.
PlotPoint* CSystemFuncs::PlotRecord(const std::string& name, int32_t barsAgo) {
    size_t index = 0;
    if (!PlotTargetBar(name, barsAgo, index)) return nullptr;
    const size_t barCount = static_cast<size_t>(BarCount());
    CKelBaseData& data = *m_pBaseData;
    if (data.FormulaKind == 6) {
        GrowTo(data.PlotPoints, barCount);
        return &data.PlotPoints[index];
    }
    if (data.FormulaKind != 4) return nullptr;

    // Names and series are parallel lists; a series the host has not allocated yet
    // for a known name is added here rather than read out of range.
    std::vector<std::string>& names = data.PlotNames;
    std::vector<std::vector<PlotPoint>>& series = data.PlotSeries;
    const int32_t found = FindPlotName(name);
    const size_t slot = found >= 0 ? static_cast<size_t>(found) : names.size();
    if (series.size() <= slot) series.resize(slot + 1);
    if (found >= 0) {
        GrowTo(series[slot], barCount);
    } else {
        series[slot].assign(barCount, PlotPoint{});
        names.push_back(name);
    }
    return &series[slot][index];
}

double CSystemFuncs::PlotNumeric(const std::string& name, double value, int32_t colour,
                                 int32_t barsAgo) {
    PlotPoint* point = PlotRecord(name, barsAgo);
    if (point == nullptr) return kInvalidNumeric;
    point->bNumericSet = value != kInvalidNumeric;
    point->dNumeric = value;
    SetColour(*point, colour);
    return value;
}

bool CSystemFuncs::PlotBool(const std::string& name, bool value, int32_t colour,
                            int32_t barsAgo) {
    PlotPoint* point = PlotRecord(name, barsAgo);
    if (point == nullptr) return false;
    point->bBoolSet = true;
    point->bBoolValue = value;
    SetColour(*point, colour);
    return value;
}

std::string CSystemFuncs::PlotString(const std::string& name, const std::string& value,
                                     int32_t colour, int32_t barsAgo) {
    PlotPoint* point = PlotRecord(name, barsAgo);
    if (point == nullptr) return kInvalidString;
    point->bTextSet = !ffoutput::IsInvalidText(value);
    point->strText = value;
    SetColour(*point, colour);
    return value;
}

// Kind 5 keeps one series of two-value bars; the name only has to be valid. A bar
// beyond the main stream's last one is refused like any other out-of-range bar.
void CSystemFuncs::PlotBar(const std::string& name, double value1, double value2,
                           int32_t colour, int32_t barsAgo) {
    size_t index = 0;
    if (!PlotTargetBar(name, barsAgo, index)) return;
    CKelBaseData& data = *m_pBaseData;
    if (data.FormulaKind != 5) return;
    GrowTo(data.BarPlots, static_cast<size_t>(BarCount()));
    BarPlotPoint& bar = data.BarPlots[index];
    bar.bSet = value1 != kInvalidNumeric && value2 != kInvalidNumeric;
    bar.dValue1 = value1;
    bar.dValue2 = value2;
    bar.bColourSet = colour != kDefaultColour;
    bar.nColour = colour;
}

// Clears the flags of the addressed bar and leaves the stored values in place. Kinds
// 5 and 6 have one series, so any valid name clears it; kind 4 needs a known name.
// A bar the series does not reach yet holds no plot, so it counts as cleared.
bool CSystemFuncs::Unplot(const std::string& name, int32_t barsAgo) {
    size_t index = 0;
    if (!PlotTargetBar(name, barsAgo, index)) return false;
    CKelBaseData& data = *m_pBaseData;
    switch (data.FormulaKind) {
        case 6:
            if (index < data.PlotPoints.size()) ClearFlags(data.PlotPoints[index]);
            return true;
        case 5:
            if (index < data.BarPlots.size()) {
                data.BarPlots[index].bSet = false;
                data.BarPlots[index].bColourSet = false;
            }
            return true;
        case 4: {
            const int32_t found = FindPlotName(name);
            if (found < 0) return false;
            if (static_cast<size_t>(found) < data.PlotSeries.size()) {
                std::vector<PlotPoint>& series = data.PlotSeries[static_cast<size_t>(found)];
                if (index < series.size()) ClearFlags(series[index]);
            }
            return true;
        }
        default:
            return false;
    }
}
