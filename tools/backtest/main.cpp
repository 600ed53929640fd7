// backtest: runs a trading strategy over a bar file and reports the result.
// Exit status: 0 done, 1 the run failed, 2 the command line cannot be used.
#include <iostream>
#include <string>
#include <vector>

#include "BacktestRun.h"
#include "runner/BacktestOptions.h"

int main(int argc, char** argv) {
    const std::vector<std::string> args(argv + 1, argv + argc);
    try {
        const ffrunner::BacktestOptions options = ffrunner::ParseBacktestArgs(args);
        if (options.help) {
            std::cout << ffrunner::BacktestUsage() << "\n" << backtest::StrategyListText();
            return 0;
        }
        backtest::RunBacktest(options, std::cout, std::cerr);
        std::cout.flush();
        return std::cout ? 0 : 1;
    } catch (const ffrunner::UsageError& e) {
        std::cerr << "backtest: " << e.what() << "\n"
                  << "Try 'backtest --help' for the list of options.\n";
        return 2;
    } catch (const backtest::RunError& e) {
        std::cerr << e.what() << "\n";
        return 1;
    } catch (const std::exception& e) {
        std::cerr << "backtest: " << e.what() << "\n";
        return 1;
    }
}
