# The cases of the backtest command's end-to-end test (see RunCases.cmake).
set(BARS --bars data/bars.csv --instrument data/instruments.json:rb2510 --tz Asia/Shanghai)

# Runs that succeed, with their reports.
backtest_case(ma_crossover 0 OUTPUTS ma_crossover.json ma_crossover_trades.csv
              ARGS ${BARS} --strategy ma-crossover --json @OUT@/ma_crossover.json
                   --trades @OUT@/ma_crossover_trades.csv)
backtest_case(channel_breakout 0 OUTPUTS channel_breakout.html
              ARGS ${BARS} --strategy channel-breakout --param length=8 --param trail=800
                   --commission 3 --html @OUT@/channel_breakout.html)
backtest_case(mean_reversion_pyramid 0 OUTPUTS mean_reversion_pyramid.json
              ARGS ${BARS} --strategy mean-reversion --max-entries 3 --same-source-entries
                   --param entry=1.5 --json @OUT@/mean_reversion_pyramid.json)
backtest_case(config_file 0 ARGS ${BARS} --strategy ma-crossover --config data/settings.json
              --commission 2 --param slow=10)
backtest_case(live_updates 0 ARGS ${BARS} --strategy ma-crossover --live-updates 5)
backtest_case(skip_bad_rows 0 ARGS --bars data/bad_row.csv --instrument data/instruments.json:rb2510
              --tz Asia/Shanghai --strategy ma-crossover --skip-bad-rows)
backtest_case(plugin 0 ARGS ${BARS} --strategy @PLUGIN@ --param step=2)
backtest_case(help 0 ARGS --help)

# Run errors: exit status 1 and the file's own message.
backtest_case(bad_row 1 ARGS --bars data/bad_row.csv --instrument data/instruments.json:rb2510
              --tz Asia/Shanghai --strategy ma-crossover)
backtest_case(missing_bars 1 ARGS --bars data/none.csv --instrument data/instruments.json:rb2510
              --strategy ma-crossover)
backtest_case(unknown_code 1 ARGS ${BARS} --strategy ma-crossover
              --instrument data/instruments.json:xx9999)
backtest_case(missing_instruments 1 ARGS --bars data/bars.csv
              --instrument data/none.json:rb2510 --strategy ma-crossover)
backtest_case(unwritable_report 1 ARGS ${BARS} --strategy ma-crossover
              --json data/no-such-folder/report.json)

# Usage errors: exit status 2, the reason and the hint.
backtest_case(unknown_option 2 ARGS ${BARS} --strategy ma-crossover --capitol 5)
backtest_case(missing_value 2 ARGS ${BARS} --strategy)
backtest_case(bad_number 2 ARGS ${BARS} --strategy ma-crossover --capital 1e6x)
backtest_case(bad_choice 2 ARGS ${BARS} --strategy ma-crossover --commission-type percent)
backtest_case(missing_strategy 2 ARGS ${BARS})
backtest_case(unknown_strategy 2 ARGS ${BARS} --strategy turtle)
backtest_case(bad_param 2 ARGS ${BARS} --strategy ma-crossover --param fast=0)
backtest_case(unknown_param 2 ARGS ${BARS} --strategy ma-crossover --param speed=1)
backtest_case(unknown_zone 2 ARGS ${BARS} --strategy ma-crossover --tz Mars/Olympus)
backtest_case(bad_config 2 ARGS ${BARS} --strategy ma-crossover --config data/bars.csv)
backtest_case(stray_argument 2 ARGS ${BARS} --strategy ma-crossover extra)
