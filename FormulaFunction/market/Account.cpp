// The broker account bound to a trading strategy: its money and its position in the
// current instrument. Values are answered only on the newest bar, are fetched once
// and then served from PropertyCache for the life of the object, so they describe
// the account as it stood at the first call. Money keys carry no data index: one
// account summary serves every data source.
#include "FormulaFunction/FormulaFunction.h"

#include "FormulaFunction/market/CachedResults.h"
#include "FormulaFunction/market/ValueIds.h"

using namespace ffmarket;

namespace {

constexpr double kPriceTolerance = 0.0001;

void SetDouble(tagKelDataType& v, double d) {
    v.nType = KelDouble;
    v.dValue = d;
}

}  // namespace

// An account is bound to a trading strategy that names both a broker and an account.
bool CSystemFuncs::AccountBound() {
    return m_pBaseData != nullptr && m_pBaseData->FormulaKind == 7 &&
           !m_pBaseData->AccountId.empty() && !m_pBaseData->BrokerId.empty();
}

// Whether the account's view of the current instrument can be asked for: the newest
// bar, a current data source and a bound account.
bool CSystemFuncs::InstrumentAccountReady() {
    if (!LastestBar()) return false;
    if (static_cast<uint32_t>(m_pBaseData->DataIndex) >= m_pBaseData->DataStreams.size())
        return false;
    return AccountBound();
}

bool CSystemFuncs::AccountDataExist() { return LastestBar() && AccountBound(); }

// The ids need not be set: any trading strategy on its newest bar reports them.
std::string CSystemFuncs::A_BrokerID() {
    if (!LastestBar() || m_pBaseData->FormulaKind != 7) return std::string();
    return m_pBaseData->BrokerId;
}

std::string CSystemFuncs::A_AccountID() {
    if (!LastestBar() || m_pBaseData->FormulaKind != 7) return std::string();
    return m_pBaseData->AccountId;
}

const tagKelDataType* CSystemFuncs::AccountValue(const char* keyFormat, int32_t valueId) {
    if (!LastestBar() || !AccountBound()) return nullptr;
    return CachedValue(keyFormat, valueId, &CSystemFuncs::GetAccountValue);
}

// Fills `value` from a fresh money summary of the account. The sell freeze reports
// the sell margin, as the sell-freeze field is not passed on.
bool CSystemFuncs::GetAccountValue(int32_t valueId, tagKelDataType& value) {
    if (g_pSubscribeManage == nullptr) return false;
    tagAccountSummary summary;
    if (g_pSubscribeManage->GetAccountSummary(summary, m_pBaseData->BrokerId,
                                              m_pBaseData->AccountId) == 0)
        return false;
    switch (valueId) {
        case kAccountPreviousEquity: SetDouble(value, summary.PreviousEquity); break;
        case kAccountProfitLoss: SetDouble(value, summary.ProfitLoss); break;
        case kAccountCurrentEquity: SetDouble(value, summary.CurrentEquity); break;
        case kAccountFreeMargin: SetDouble(value, summary.FreeMargin); break;
        case kAccountBuyFreeze: SetDouble(value, summary.BuyFreeze); break;
        case kAccountBuyMargin: SetDouble(value, summary.BuyMargin); break;
        case kAccountSellFreeze: SetDouble(value, summary.SellMargin); break;
        case kAccountSellMargin: SetDouble(value, summary.SellMargin); break;
        case kAccountTodayDeposit: SetDouble(value, summary.TodayDeposit); break;
        case kAccountTodayDrawing: SetDouble(value, summary.TodayDrawing); break;
        default: return false;
    }
    return true;
}

const tagKelDataType* CSystemFuncs::InstrumentAccountValue(const char* keyFormat, int32_t valueId,
                                                           ValueFetch fetch) {
    if (!InstrumentAccountReady()) return nullptr;
    return CachedValue(keyFormat, valueId, fetch);
}

// Fills `value` from a fresh view of the account's position in the current
// instrument. The open profit of each side values the position at the price it
// would be closed at: the bid for the long side and the ask for the short side,
// or the last price when that side of the book is empty. The whole position's
// profit is the two sides' cached profits.
bool CSystemFuncs::GetPositionValue(int32_t valueId, tagKelDataType& value) {
    tagSymbol symbol;
    if (!CurrentSymbol(symbol) || g_pSubscribeManage == nullptr) return false;
    tagOpenedPosition position;
    if (g_pSubscribeManage->GetPosition(position, m_pBaseData->BrokerId, m_pBaseData->AccountId,
                                        symbol) == 0)
        return false;
    switch (valueId) {
        case kPositionBuyPosition: SetDouble(value, position.BuyPosition); break;
        case kPositionBuyAvgPrice: SetDouble(value, position.BuyAvgPrice); break;
        case kPositionTodayBuyPosition: SetDouble(value, position.TodayBuyPosition); break;
        case kPositionSellPosition: SetDouble(value, position.SellPosition); break;
        case kPositionSellAvgPrice: SetDouble(value, position.SellAvgPrice); break;
        case kPositionTodaySellPosition: SetDouble(value, position.TodaySellPosition); break;
        case kPositionTotalPosition: SetDouble(value, position.TotalPosition); break;
        case kPositionTotalAvgPrice: SetDouble(value, position.TotalAvgPrice); break;
        case kPositionBuyProfitLoss: {
            double market = Q_BidPrice(1);
            if (!(market > kPriceTolerance)) market = Q_Last();
            SetDouble(value, (market - position.BuyAvgPrice) * ContractUnit() * BigPointValue() *
                                 position.BuyPosition);
            break;
        }
        case kPositionSellProfitLoss: {
            double market = Q_AskPrice(1);
            if (!(market > kPriceTolerance)) market = Q_Last();
            SetDouble(value, (position.SellAvgPrice - market) * ContractUnit() * BigPointValue() *
                                 position.SellPosition);
            break;
        }
        case kPositionProfitLoss: {
            const double sell = A_SellProfitLoss();
            SetDouble(value, sell + A_BuyProfitLoss());
            break;
        }
        default: return false;
    }
    return true;
}

double CSystemFuncs::A_PreviousEquity() {
    return DoubleOf(AccountValue("A_PreviousEquity", kAccountPreviousEquity));
}

double CSystemFuncs::A_ProfitLoss() {
    return DoubleOf(AccountValue("A_ProfitLoss", kAccountProfitLoss));
}

double CSystemFuncs::A_CurrentEquity() {
    return DoubleOf(AccountValue("A_CurrentEquity", kAccountCurrentEquity));
}

double CSystemFuncs::A_FreeMargin() {
    return DoubleOf(AccountValue("A_FreeMargin", kAccountFreeMargin));
}

double CSystemFuncs::A_BuyFreeze() {
    return DoubleOf(AccountValue("A_BuyFreeze", kAccountBuyFreeze));
}

double CSystemFuncs::A_BuyMargin() {
    return DoubleOf(AccountValue("A_BuyMargin", kAccountBuyMargin));
}

double CSystemFuncs::A_SellFreeze() {
    return DoubleOf(AccountValue("A_SellFreeze", kAccountSellFreeze));
}

double CSystemFuncs::A_SellMargin() {
    return DoubleOf(AccountValue("A_SellMargin", kAccountSellMargin));
}

double CSystemFuncs::A_TodayDeposit() {
    return DoubleOf(AccountValue("A_TodayDeposit", kAccountTodayDeposit));
}

double CSystemFuncs::A_TodayDrawing() {
    return DoubleOf(AccountValue("A_TodayDrawing", kAccountTodayDrawing));
}

double CSystemFuncs::A_BuyPosition() {
    return DoubleOf(InstrumentAccountValue("Data%d.A_BuyPosition", kPositionBuyPosition,
                                           &CSystemFuncs::GetPositionValue));
}

double CSystemFuncs::A_BuyAvgPrice() {
    return DoubleOf(InstrumentAccountValue("Data%d.A_BuyAvgPrice", kPositionBuyAvgPrice,
                                           &CSystemFuncs::GetPositionValue));
}

double CSystemFuncs::A_BuyProfitLoss() {
    return DoubleOf(InstrumentAccountValue("Data%d.A_BuyProfitLoss", kPositionBuyProfitLoss,
                                           &CSystemFuncs::GetPositionValue));
}

double CSystemFuncs::A_TodayBuyPosition() {
    return DoubleOf(InstrumentAccountValue("Data%d.A_TodayBuyPosition", kPositionTodayBuyPosition,
                                           &CSystemFuncs::GetPositionValue));
}

double CSystemFuncs::A_SellPosition() {
    return DoubleOf(InstrumentAccountValue("Data%d.A_SellPosition", kPositionSellPosition,
                                           &CSystemFuncs::GetPositionValue));
}

double CSystemFuncs::A_SellAvgPrice() {
    return DoubleOf(InstrumentAccountValue("Data%d.A_SellAvgPrice", kPositionSellAvgPrice,
                                           &CSystemFuncs::GetPositionValue));
}

double CSystemFuncs::A_SellProfitLoss() {
    return DoubleOf(InstrumentAccountValue("Data%d.A_SellProfitLoss", kPositionSellProfitLoss,
                                           &CSystemFuncs::GetPositionValue));
}

double CSystemFuncs::A_TodaySellPosition() {
    return DoubleOf(InstrumentAccountValue("Data%d.A_TodaySellPosition",
                                           kPositionTodaySellPosition,
                                           &CSystemFuncs::GetPositionValue));
}

double CSystemFuncs::A_TotalPosition() {
    return DoubleOf(InstrumentAccountValue("Data%d.A_TotalPosition", kPositionTotalPosition,
                                           &CSystemFuncs::GetPositionValue));
}

double CSystemFuncs::A_TotalAvgPrice() {
    return DoubleOf(InstrumentAccountValue("Data%d.A_TotalAvgPrice", kPositionTotalAvgPrice,
                                           &CSystemFuncs::GetPositionValue));
}

double CSystemFuncs::A_PositionProfitLoss() {
    return DoubleOf(InstrumentAccountValue("Data%d.A_PositionProfitLoss", kPositionProfitLoss,
                                           &CSystemFuncs::GetPositionValue));
}
