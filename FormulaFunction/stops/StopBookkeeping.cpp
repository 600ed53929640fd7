// Bookkeeping of the stops when a position ends.
#include "FormulaFunction/FormulaFunction.h"

// Once the strategy is flat, the worst open result of the position just ended joins
// the running sum of such results, and the marks and size of that position are
// cleared. While a position is open nothing changes.
void CSystemFuncs::CalcStopMaxInfo() {
    if (!InStrategy() || MarketPosition() != 0) return;
    PositionFigures& figures = m_pBaseData->Result->Figures;
    figures.ClosedPositionsDrawDown += figures.MaxPositionLossMark;
    figures.MaxPositionProfitMark = 0.0;
    figures.MaxPositionLossMark = 0.0;
    figures.PositionContracts = 0.0;
}
