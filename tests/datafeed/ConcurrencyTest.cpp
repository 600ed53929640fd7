// Several processes share one database file: every write must arrive whole and contract
// numbers must never repeat, even when a writer dies in the middle of its work.
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <set>
#include <string>
#include <thread>

#include "DatafeedTestSupport.h"
#include "datafeed/LocalDataFeed.h"

using datafeed::CLocalDataFeed;
using datafeed::MakeSymbol;
using datafeed_test::kAccount;
using datafeed_test::kBroker;
using datafeed_test::kRebar;
using datafeed_test::MakeOrder;
using datafeed_test::MakeQuote;
using datafeed_test::TempDir;

namespace {

constexpr int kOrdersPerWriter = 150;
constexpr size_t kValueLength = 20000;

// The value writer `writer` stores in round `round`: one repeated letter with the round
// number at both ends, so that a mixture of two writes or a cut-off write shows.
std::string ValueOf(int writer, int round) {
    const std::string mark = std::to_string(writer) + ":" + std::to_string(round) + ":";
    return mark + std::string(kValueLength, static_cast<char>('A' + writer)) + mark;
}

bool IsWholeValue(const std::string& value) {
    const size_t first = value.find(':');
    const size_t second = value.find(':', first + 1);
    if (first == std::string::npos || second == std::string::npos) return false;
    const int writer = std::stoi(value.substr(0, first));
    const int round = std::stoi(value.substr(first + 1, second - first - 1));
    return value == ValueOf(writer, round);
}

// An order carries its writer and round in lots, price and tag alike.
tagBrokerOrder OrderOf(int writer, int round) {
    tagBrokerOrder order = MakeOrder(1, 0, writer + 1, 3000 + round);
    order.Tag = "w" + std::to_string(writer) + "r" + std::to_string(round);
    return order;
}

bool IsWholeOrder(const tagBrokerOrder& order) {
    const size_t r = order.Tag.find('r');
    if (order.Tag.size() < 4 || order.Tag[0] != 'w' || r == std::string::npos) return false;
    const int writer = std::stoi(order.Tag.substr(1, r - 1));
    const int round = std::stoi(order.Tag.substr(r + 1));
    const tagBrokerOrder expected = OrderOf(writer, round);
    return order.Lots == expected.Lots && order.Price == expected.Price &&
           order.BrokerId == kBroker && order.AccountId == kAccount && order.Code == kRebar.Code &&
           order.Status == 3 && order.FilledLots == order.Lots && order.FilledPrice == 3000;
}

// The work of one writer process: opens its own connection, then alternates orders and
// configuration values. Returns the process exit code.
int RunWriter(const std::string& path, int writer, int rounds) {
    try {
        CLocalDataFeed feed(path);
        feed.SetInstruments(datafeed_test::TestCatalogue());
        feed.SetQuote(kRebar, MakeQuote(3000, 3000, 3000));
        if (!feed.SetStartingBalance(kBroker, kAccount, 1e12)) return 2;
        for (int round = 0; rounds < 0 || round < rounds; ++round) {
            tagBrokerOrder order = OrderOf(writer, round);
            if (feed.SendOrder(order) == 0) return 3;
            feed.SetConfigFileProperty("tblprofile", "Shared", "Value", ValueOf(writer, round));
            feed.SetConfigFileProperty("tblprofile", "Writer" + std::to_string(writer), "Round",
                                       std::to_string(round));
        }
        return feed.LastError().empty() ? 0 : 4;
    } catch (...) {
        return 1;
    }
}

pid_t StartWriter(const std::string& path, int writer, int rounds) {
    const pid_t pid = fork();
    if (pid == 0) _exit(RunWriter(path, writer, rounds));
    return pid;
}

int ExitCodeOf(pid_t pid) {
    int status = 0;
    if (waitpid(pid, &status, 0) != pid || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status);
}

// Checks everything the writers left: each order whole, numbers unique, the position
// equal to the sum of the filled lots, every value whole. Returns the order count.
size_t CheckWholeness(const std::string& path) {
    CLocalDataFeed feed(path);
    feed.SetInstruments(datafeed_test::TestCatalogue());
    std::vector<tagBrokerOrder> orders;
    EXPECT_EQ(feed.GetOrders(orders, kBroker, kAccount, MakeSymbol(kRebar)), 1);
    std::set<std::string> numbers;
    double lots = 0;
    for (const tagBrokerOrder& order : orders) {
        EXPECT_TRUE(IsWholeOrder(order)) << order.Tag;
        EXPECT_TRUE(numbers.insert(order.ContractNo).second) << order.ContractNo;
        lots += order.FilledLots;
    }
    tagOpenedPosition position;
    EXPECT_EQ(feed.GetPosition(position, kBroker, kAccount, MakeSymbol(kRebar)), 1);
    EXPECT_EQ(position.BuyPosition, lots);
    std::string value;
    if (feed.GetConfigFileProperty("tblprofile", "Shared", "Value", value)) {
        EXPECT_TRUE(IsWholeValue(value)) << value.substr(0, 40);
    }
    return orders.size();
}

}  // namespace

TEST(SharedDatabase, TwoProcessesWritingAtOnceLoseAndMixNothing) {
    TempDir dir;
    const std::string path = dir.File("shared.db");
    const pid_t first = StartWriter(path, 0, kOrdersPerWriter);
    const pid_t second = StartWriter(path, 1, kOrdersPerWriter);
    ASSERT_GT(first, 0);
    ASSERT_GT(second, 0);
    EXPECT_EQ(ExitCodeOf(first), 0);
    EXPECT_EQ(ExitCodeOf(second), 0);

    EXPECT_EQ(CheckWholeness(path), 2u * kOrdersPerWriter);
    CLocalDataFeed feed(path);
    feed.SetInstruments(datafeed_test::TestCatalogue());
    std::vector<tagBrokerOrder> orders;
    feed.GetOrders(orders, kBroker, kAccount, MakeSymbol(kRebar));
    std::set<std::string> tags;
    for (const tagBrokerOrder& order : orders) tags.insert(order.Tag);
    EXPECT_EQ(tags.size(), 2u * kOrdersPerWriter);
    tagOpenedPosition position;
    feed.GetPosition(position, kBroker, kAccount, MakeSymbol(kRebar));
    EXPECT_EQ(position.BuyPosition, 3.0 * kOrdersPerWriter);
    for (int writer = 0; writer < 2; ++writer) {
        std::string round;
        EXPECT_TRUE(feed.GetConfigFileProperty("tblprofile", "Writer" + std::to_string(writer),
                                               "Round", round));
        EXPECT_EQ(round, std::to_string(kOrdersPerWriter - 1));
    }
}

TEST(SharedDatabase, AReaderNeverSeesHalfAWrite) {
    TempDir dir;
    const std::string path = dir.File("shared.db");
    { CLocalDataFeed create(path); }
    const pid_t writer = StartWriter(path, 0, kOrdersPerWriter);
    ASSERT_GT(writer, 0);
    CLocalDataFeed reader(path);
    reader.SetInstruments(datafeed_test::TestCatalogue());
    size_t seen = 0;
    for (int look = 0; look < 200 && seen < static_cast<size_t>(kOrdersPerWriter); ++look) {
        std::vector<tagBrokerOrder> orders;
        if (reader.GetOrders(orders, kBroker, kAccount, MakeSymbol(kRebar)) == 0) continue;
        EXPECT_GE(orders.size(), seen);
        seen = orders.size();
        for (const tagBrokerOrder& order : orders) EXPECT_TRUE(IsWholeOrder(order)) << order.Tag;
        std::string value;
        if (reader.GetConfigFileProperty("tblprofile", "Shared", "Value", value)) {
            EXPECT_TRUE(IsWholeValue(value));
        }
    }
    EXPECT_EQ(ExitCodeOf(writer), 0);
    EXPECT_EQ(CheckWholeness(path), static_cast<size_t>(kOrdersPerWriter));
}

TEST(SharedDatabase, AWriterKilledMidWayLeavesOnlyWholeWrites) {
    TempDir dir;
    const std::string path = dir.File("shared.db");
    { CLocalDataFeed create(path); }
    const pid_t writer = StartWriter(path, 0, -1);
    ASSERT_GT(writer, 0);
    // Let it write for a while, then kill it without warning.
    {
        CLocalDataFeed watcher(path);
        watcher.SetInstruments(datafeed_test::TestCatalogue());
        for (int wait = 0; wait < 3000; ++wait) {
            std::vector<tagBrokerOrder> orders;
            watcher.GetOrders(orders, kBroker, kAccount, MakeSymbol(kRebar));
            if (orders.size() >= 50) break;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
    ASSERT_EQ(kill(writer, SIGKILL), 0);
    int status = 0;
    ASSERT_EQ(waitpid(writer, &status, 0), writer);
    EXPECT_TRUE(WIFSIGNALED(status));

    const size_t count = CheckWholeness(path);
    EXPECT_GE(count, 50u);
    // The numbering goes on after the dead writer's numbers.
    CLocalDataFeed feed(path);
    feed.SetInstruments(datafeed_test::TestCatalogue());
    feed.SetQuote(kRebar, MakeQuote(3000, 3000, 3000));
    tagBrokerOrder order = OrderOf(5, 0);
    ASSERT_EQ(feed.SendOrder(order), 1);
    EXPECT_EQ(order.ContractNo, std::to_string(count + 1));
}
