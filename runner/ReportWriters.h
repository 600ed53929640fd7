// Writers of a finished run's report: a text summary, JSON with the round trips, the
// trade list as CSV, and one self-contained HTML page (inline CSS and SVG, no
// scripts, nothing fetched). Times are shown in the process's time zone.
#pragma once

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "runner/Report.h"

namespace ffrunner {

// The summary figures as (label, text) pairs, in the order the reports show them.
std::vector<std::pair<std::string, std::string>> SummaryLines(const Report& report);

void WriteTextReport(const Report& report, std::ostream& out);
void WriteJsonReport(const Report& report, std::ostream& out);
void WriteTradesCsv(const Report& report, std::ostream& out);
void WriteHtmlReport(const Report& report, std::ostream& out);

}  // namespace ffrunner
