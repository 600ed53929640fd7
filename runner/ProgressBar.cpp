#include "runner/ProgressBar.h"

namespace ffrunner {

ProgressBar::ProgressBar(std::string label, bool enabled, std::FILE* stream)
    : label_(std::move(label)), start_(std::chrono::steady_clock::now()) {
    if (enabled) stream_ = stream != nullptr ? stream : StandardErrorIsTerminal() ? stderr : nullptr;
}

ProgressBar::~ProgressBar() { Finish(); }

void ProgressBar::StartedAgo(double seconds) {
    start_ = std::chrono::steady_clock::now() -
             std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                 std::chrono::duration<double>(seconds));
}

std::string ProgressBar::Render(const std::string& label, size_t done, size_t total,
                                size_t width) {
    if (done > total) done = total;
    const size_t filled = total == 0 ? width : done * width / total;
    const size_t percent = total == 0 ? 100 : done * 100 / total;
    std::string line = label + " [" + std::string(filled, '#') + std::string(width - filled, '.') + "] ";
    const std::string share = std::to_string(percent) + "%";
    line += std::string(share.size() < 4 ? 4 - share.size() : 0, ' ') + share + "  " +
            std::to_string(done) + "/" + std::to_string(total);
    return line;
}

void ProgressBar::Update(size_t done, size_t total) {
    if (stream_ == nullptr) return;
    const auto now = std::chrono::steady_clock::now();
    if (now - start_ < std::chrono::seconds(1)) return;
    if (drawn_ && now - lastDraw_ < std::chrono::milliseconds(100) && done < total) return;
    lastDraw_ = now;
    drawn_ = true;
    std::fprintf(stream_, "\r%s", Render(label_, done, total, 30).c_str());
    std::fflush(stream_);
}

void ProgressBar::Finish() {
    if (stream_ == nullptr || !drawn_) return;
    std::fprintf(stream_, "\r%s\r", std::string(label_.size() + 64, ' ').c_str());
    std::fflush(stream_);
    drawn_ = false;
}

}  // namespace ffrunner
