#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "FormulaFunction/FormulaFunction.h"
#include "support/FakeSubscribeManage.h"
#include "support/InstrumentFixture.h"
#include "support/TestAccess.h"

namespace {

constexpr int32_t kInvalidInt = 2147483647;

using ValueCache = InstrumentFixture;

tagKelDataType Long(int32_t n) {
    tagKelDataType v;
    v.nType = 10;
    v.nValue = n;
    return v;
}

TEST_F(ValueCache, EntryPutThereByTheHostIsServedWithoutALibraryCall) {
    funcs.PropertyCache["Data0.MinMove"] = Long(25);
    EXPECT_EQ(funcs.MinMove(), 25);
    EXPECT_EQ(fake.calls.GetSymbolProperty, 0);
}

TEST_F(ValueCache, ValueChangedInTheMapIsSeen) {
    EXPECT_EQ(funcs.MinMove(), 1);
    funcs.PropertyCache["Data0.MinMove"].nValue = 4;
    EXPECT_EQ(funcs.MinMove(), 4);
}

// Entries the host erases are fetched again; the remembered shortcut into the map
// must never be used after its entry is gone.
TEST_F(ValueCache, EntryErasedByTheHostIsFetchedAgain) {
    EXPECT_EQ(funcs.MinMove(), 1);
    EXPECT_EQ(funcs.PriceScale(), static_cast<double>(0.01f));
    funcs.PropertyCache.erase("Data0.MinMove");
    EXPECT_EQ(funcs.MinMove(), 1);
    EXPECT_EQ(fake.calls.GetSymbolProperty, 3);
    EXPECT_EQ(funcs.PropertyCache.size(), 2u);

    funcs.PropertyCache.clear();
    EXPECT_EQ(funcs.PriceScale(), static_cast<double>(0.01f));
    EXPECT_EQ(funcs.MinMove(), 1);
    EXPECT_EQ(fake.calls.GetSymbolProperty, 5);
}

TEST_F(ValueCache, EntriesAddedByTheHostDoNotDisturbRememberedOnes) {
    EXPECT_EQ(funcs.MinMove(), 1);
    for (int i = 0; i < 50; ++i) funcs.PropertyCache["Host" + std::to_string(i)] = Long(i);
    EXPECT_EQ(funcs.MinMove(), 1);
    EXPECT_EQ(fake.calls.GetSymbolProperty, 1);
}

TEST_F(ValueCache, CopyServesTheCopiedEntries) {
    EXPECT_EQ(funcs.MinMove(), 1);
    CSystemFuncs copy(funcs);
    EXPECT_EQ(copy.MinMove(), 1);
    copy.PropertyCache["Data0.MinMove"].nValue = 9;
    EXPECT_EQ(copy.MinMove(), 9);
    EXPECT_EQ(funcs.MinMove(), 1);

    CSystemFuncs assigned(&data);
    EXPECT_EQ(assigned.ContractUnit(), 10);
    assigned = copy;
    EXPECT_EQ(assigned.MinMove(), 9);
    EXPECT_EQ(assigned.ContractUnit(), 10);  // fetched again: the copy had no such entry
    EXPECT_EQ(fake.calls.GetSymbolProperty, 3);
}

TEST_F(ValueCache, ManyDataSourcesKeepSeparateEntries) {
    const int count = 70;  // more data sources than the shortcut table has rows
    for (int i = 1; i < count; ++i) {
        DataStream s = data.DataStreams[0];
        s.Code = "c" + std::to_string(i);
        data.DataStreams.push_back(s);
        IModuleFutureTrader::ISpecDetailValue spec = Spec();
        spec.MinMove = i;
        fake.AddSpec(kMarket, s.Code, spec);
    }
    for (int round = 0; round < 2; ++round) {
        for (int i = 1; i < count; ++i) {
            data.DataIndex = i;
            EXPECT_EQ(funcs.MinMove(), i);
        }
    }
    EXPECT_EQ(fake.calls.GetSymbolProperty, count - 1);
    EXPECT_EQ(funcs.PropertyCache.at("Data69.MinMove").nValue, 69);
}

TEST_F(ValueCache, GetPropertysRejectsUnknownIdsAfterAskingTheLibrary) {
    for (int32_t id : {0, 26, -1, 1000}) {
        tagKelDataType value;
        EXPECT_FALSE(CSystemFuncsTestAccess::GetPropertys(funcs, id, value)) << id;
        EXPECT_EQ(value.nType, 0);
    }
    EXPECT_EQ(fake.calls.GetSymbolProperty, 4);
}

TEST_F(ValueCache, GetPropertysWithIdEighteenSucceedsWithoutTouchingTheRecord) {
    tagKelDataType value;
    value.nValue = 77;
    EXPECT_TRUE(CSystemFuncsTestAccess::GetPropertys(funcs, 18, value));
    EXPECT_EQ(value.nType, 0);
    EXPECT_EQ(value.nValue, 77);
}

TEST_F(ValueCache, GetPropertysFailsForAnUnknownInstrumentBeforeLookingAtTheId) {
    data.DataStreams[0].Code = "nothing";
    tagKelDataType value;
    EXPECT_FALSE(CSystemFuncsTestAccess::GetPropertys(funcs, 18, value));
    EXPECT_EQ(fake.calls.GetSymbolProperty, 1);
}

TEST_F(ValueCache, SymbolCarriesMarketAndCode) {
    tagSymbol symbol;
    std::memset(symbol.Code, 'x', sizeof symbol.Code);
    symbol.MarketId = 99;
    ASSERT_TRUE(CSystemFuncsTestAccess::CurrentSymbol(funcs, symbol));
    EXPECT_EQ(symbol.MarketId, kMarket);
    EXPECT_STREQ(symbol.Code, "rb2405");
    data.DataIndex = 1;
    EXPECT_FALSE(CSystemFuncsTestAccess::CurrentSymbol(funcs, symbol));
}

TEST_F(ValueCache, LongCodeIsCutToThirtyOneCharacters) {
    const std::string code31(31, 'a');
    const std::string code40 = code31 + "bbbbbbbbb";
    data.DataStreams[0].Code = code40;
    tagSymbol symbol;
    ASSERT_TRUE(CSystemFuncsTestAccess::CurrentSymbol(funcs, symbol));
    EXPECT_EQ(std::string(symbol.Code), code31);
    EXPECT_EQ(symbol.Code[31], '\0');

    fake.AddSpec(kMarket, code31, Spec());
    EXPECT_EQ(funcs.MinMove(), 1);
    EXPECT_EQ(funcs.Symbol(), code40);  // the code itself is not cut

    data.DataStreams[0].Code = std::string(32, 'c');
    ASSERT_TRUE(CSystemFuncsTestAccess::CurrentSymbol(funcs, symbol));
    EXPECT_EQ(std::string(symbol.Code), std::string(31, 'c'));
    data.DataStreams[0].Code = code31;
    ASSERT_TRUE(CSystemFuncsTestAccess::CurrentSymbol(funcs, symbol));
    EXPECT_EQ(std::string(symbol.Code), code31);
}

TEST_F(ValueCache, CodeEndsAtItsFirstZero) {
    data.DataStreams[0].Code = std::string("rb2405\0junk", 11);
    tagSymbol symbol;
    ASSERT_TRUE(CSystemFuncsTestAccess::CurrentSymbol(funcs, symbol));
    EXPECT_STREQ(symbol.Code, "rb2405");
    EXPECT_EQ(funcs.Symbol(), "rb2405");
    EXPECT_EQ(funcs.MinMove(), 1);
}

TEST_F(ValueCache, EmptyCodeIsAskedAsSuch) {
    data.DataStreams[0].Code.clear();
    EXPECT_EQ(funcs.MinMove(), kInvalidInt);
    fake.AddSpec(kMarket, "", Spec());
    EXPECT_EQ(funcs.MinMove(), 1);
}

}  // namespace
