// A progress bar on standard error for long runs: drawn only when standard error is
// a terminal and the work has already taken more than a second, redrawn at most ten
// times a second, and wiped when the work is done.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <string>

namespace ffrunner {

// Whether standard error is a terminal (platform/Terminal.cpp).
bool StandardErrorIsTerminal();

class ProgressBar {
public:
    // `enabled` false (--quiet) never draws; `stream` null means standard error when
    // it is a terminal.
    explicit ProgressBar(std::string label, bool enabled = true, std::FILE* stream = nullptr);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void Update(size_t done, size_t total);
    // Wipes the bar if it was drawn.
    void Finish();

    // The line drawn for `done` of `total`: "label [#####.....]  50%  500/1000".
    static std::string Render(const std::string& label, size_t done, size_t total, size_t width);

    // Pretends the work started `seconds` ago (for tests).
    void StartedAgo(double seconds);

private:
    std::string label_;
    std::FILE* stream_ = nullptr;
    std::chrono::steady_clock::time_point start_;
    std::chrono::steady_clock::time_point lastDraw_;
    bool drawn_ = false;
};

}  // namespace ffrunner
