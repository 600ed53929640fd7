// Sums over the last N bars in constant time: prefix sums indexed by bar. Setting a
// bar's value again (a re-evaluation of the live bar) overwrites its prefix, so the
// sums stay right however often a bar is evaluated.
#pragma once

#include <cstdint>
#include <vector>

namespace ffexamples {

class RunningSums {
public:
    // Forgets every value; `bars` is a capacity hint.
    void Reset(int32_t bars) {
        prefix_.assign(1, 0.0);
        if (bars > 0) prefix_.reserve(static_cast<size_t>(bars) + 1);
    }

    // The value of bar `bar`; bars are set in order, each possibly more than once.
    // A new bar appends its prefix; a bar set again overwrites it.
    void Set(int32_t bar, double value) {
        const size_t next = static_cast<size_t>(bar) + 1;
        if (prefix_.size() == next) {
            prefix_.push_back(prefix_[next - 1] + value);
            return;
        }
        if (prefix_.size() < next + 1) prefix_.resize(next + 1);
        prefix_[next] = prefix_[next - 1] + value;
    }

    // Sum of the `length` values ending at bar `bar` (bar ≥ length − 1).
    double Sum(int32_t bar, int32_t length) const {
        return prefix_[static_cast<size_t>(bar) + 1] - prefix_[static_cast<size_t>(bar + 1 - length)];
    }

private:
    std::vector<double> prefix_ = {0.0};
};

}  // namespace ffexamples
