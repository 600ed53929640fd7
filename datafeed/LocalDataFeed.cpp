#include "datafeed/LocalDataFeed.h"

#include <chrono>
#include <exception>

#include "datafeed/ConfigStore.h"
#include "datafeed/Database.h"
#include "datafeed/DatafeedError.h"
#include "datafeed/MarketView.h"
#include "datafeed/PaperBroker.h"
#include "datafeed/Schema.h"
#include "datafeed/TradingDay.h"

namespace datafeed {
namespace {

int64_t SystemSeconds() {
    using namespace std::chrono;
    return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

}  // namespace

CLocalDataFeed::CLocalDataFeed(const std::string& databasePath)
    : db_(std::make_unique<Database>(databasePath)), clock_(SystemSeconds) {
    PrepareSchema(*db_);
    config_ = std::make_unique<ConfigStore>(*db_);
    broker_ = std::make_unique<PaperBroker>(*db_);
}

CLocalDataFeed::~CLocalDataFeed() = default;

template <typename Result, typename Operation>
Result CLocalDataFeed::Guarded(Result failed, Operation operation) {
    try {
        return operation();
    } catch (const std::exception& e) {
        lastError_ = e.what();
    } catch (...) {
        lastError_ = db_->Path() + ": unexpected failure";
    }
    return failed;
}

MarketView CLocalDataFeed::Market() const {
    const int64_t now = clock_();
    return MarketView{instruments_, quotes_, LocalDateOf(now), now};
}

void CLocalDataFeed::LoadInstruments(const std::string& path) {
    InstrumentCatalogue catalogue = LoadInstrumentFile(path);
    std::lock_guard<std::mutex> guard(mutex_);
    instruments_ = std::move(catalogue);
}

void CLocalDataFeed::SetInstruments(InstrumentCatalogue catalogue) {
    std::lock_guard<std::mutex> guard(mutex_);
    instruments_ = std::move(catalogue);
}

bool CLocalDataFeed::MatchLocked(const InstrumentKey& instrument) {
    return Guarded(false, [&] {
        broker_->Match(instrument, Market());
        return true;
    });
}

bool CLocalDataFeed::SetQuote(const InstrumentKey& instrument,
                              const IModuleFutureTrader::ITickEx& tick) {
    std::lock_guard<std::mutex> guard(mutex_);
    if (instruments_.Find(instrument) == nullptr) return false;
    quotes_.Set(instrument, tick);
    return MatchLocked(instrument);
}

bool CLocalDataFeed::SetQuoteFromBar(const InstrumentKey& instrument, const BarRecord& newestBar) {
    return SetQuote(instrument, QuoteFromBar(newestBar));
}

void CLocalDataFeed::LoadQuotes(const std::string& path) {
    const std::vector<QuoteEntry> entries = LoadQuoteFile(path);
    std::lock_guard<std::mutex> guard(mutex_);
    for (size_t i = 0; i < entries.size(); ++i) {
        if (instruments_.Find(entries[i].Key) == nullptr) {
            throw DatafeedError(path + ": quotes[" + std::to_string(i) + "]: unknown instrument " +
                                std::to_string(entries[i].Key.MarketId) + "/" +
                                entries[i].Key.Code);
        }
    }
    for (const QuoteEntry& entry : entries) quotes_.Set(entry.Key, entry.Tick);
    for (const QuoteEntry& entry : entries) MatchLocked(entry.Key);
}

bool CLocalDataFeed::SetStartingBalance(const std::string& brokerId, const std::string& accountId,
                                        double balance) {
    std::lock_guard<std::mutex> guard(mutex_);
    return Guarded(false, [&] {
        return broker_->SetStartingBalance(AccountKey{brokerId, accountId}, balance, Market());
    });
}

void CLocalDataFeed::SetClock(std::function<int64_t()> clock) {
    std::lock_guard<std::mutex> guard(mutex_);
    clock_ = clock ? std::move(clock) : SystemSeconds;
}

std::string CLocalDataFeed::LastError() const {
    std::lock_guard<std::mutex> guard(mutex_);
    return lastError_;
}

int CLocalDataFeed::GetSymbolProperty(const tagSymbol& symbol,
                                      IModuleFutureTrader::ISpecDetailValue& spec) {
    std::lock_guard<std::mutex> guard(mutex_);
    const IModuleFutureTrader::ISpecDetailValue* known = instruments_.Find(KeyOf(symbol));
    if (known == nullptr) return 0;
    spec = *known;
    return 1;
}

int CLocalDataFeed::GetAllExchanges(std::vector<tagExchangeInfo>& exchanges) {
    std::lock_guard<std::mutex> guard(mutex_);
    exchanges = instruments_.Exchanges;
    return 1;
}

int CLocalDataFeed::GetMarketQuote(const tagSymbol& symbol, IModuleFutureTrader::ITickEx& tick) {
    std::lock_guard<std::mutex> guard(mutex_);
    const InstrumentKey key = KeyOf(symbol);
    if (instruments_.Find(key) == nullptr) return 0;
    const IModuleFutureTrader::ITickEx* quote = quotes_.Find(key);
    if (quote == nullptr) return 0;
    tick = *quote;
    return 1;
}

int CLocalDataFeed::GetAccountSummary(tagAccountSummary& summary, const std::string& brokerId,
                                      const std::string& accountId) {
    std::lock_guard<std::mutex> guard(mutex_);
    return Guarded(0, [&] {
        return broker_->AccountSummary(AccountKey{brokerId, accountId}, Market(), summary) ? 1 : 0;
    });
}

int CLocalDataFeed::GetPosition(tagOpenedPosition& position, const std::string& brokerId,
                                const std::string& accountId, const tagSymbol& symbol) {
    std::lock_guard<std::mutex> guard(mutex_);
    return Guarded(0, [&] {
        return broker_->Position(AccountKey{brokerId, accountId}, KeyOf(symbol), Market(),
                                 position) ? 1 : 0;
    });
}

int CLocalDataFeed::GetOrders(std::vector<tagBrokerOrder>& orders, const std::string& brokerId,
                              const std::string& accountId, const tagSymbol& symbol) {
    std::lock_guard<std::mutex> guard(mutex_);
    return Guarded(0, [&] {
        return broker_->Orders(AccountKey{brokerId, accountId}, KeyOf(symbol), Market(), false,
                               orders) ? 1 : 0;
    });
}

int CLocalDataFeed::GetOpenOrders(std::vector<tagBrokerOrder>& orders, const std::string& brokerId,
                                  const std::string& accountId, const tagSymbol& symbol) {
    std::lock_guard<std::mutex> guard(mutex_);
    return Guarded(0, [&] {
        return broker_->Orders(AccountKey{brokerId, accountId}, KeyOf(symbol), Market(), true,
                               orders) ? 1 : 0;
    });
}

int CLocalDataFeed::SendOrder(tagBrokerOrder& order) {
    std::lock_guard<std::mutex> guard(mutex_);
    return Guarded(0, [&] { return broker_->Send(order, Market()) ? 1 : 0; });
}

int CLocalDataFeed::DeleteOrder(const std::string& brokerId, const std::string& accountId,
                                const std::string& contractNo) {
    std::lock_guard<std::mutex> guard(mutex_);
    return Guarded(0, [&] {
        return broker_->Cancel(AccountKey{brokerId, accountId}, contractNo) ? 1 : 0;
    });
}

bool CLocalDataFeed::GetConfigFileProperty(const std::string& table, const std::string& section,
                                           const std::string& key, std::string& value) {
    std::lock_guard<std::mutex> guard(mutex_);
    return Guarded(false, [&] { return config_->Get(table, section, key, value); });
}

void CLocalDataFeed::SetConfigFileProperty(const std::string& table, const std::string& section,
                                           const std::string& key, const std::string& value) {
    std::lock_guard<std::mutex> guard(mutex_);
    Guarded(false, [&] {
        config_->Set(table, section, key, value);
        return true;
    });
}

}  // namespace datafeed
