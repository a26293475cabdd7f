#include "sheet/cli/progress.h"

#include "sheet/cli/files.h"

namespace sheet::cli {

namespace {

constexpr std::chrono::milliseconds patience{1000};
constexpr std::chrono::milliseconds interval{200};

} // namespace

ProgressLine::ProgressLine(const char* things)
    : things_{things}, terminal_{isTerminal(Stream::error)}, next_{Clock::now() + patience} {}

ProgressLine::~ProgressLine() {
    if (shown_) {
        print(Stream::error, "\r" + std::string(60, ' ') + "\r");
    }
}

void ProgressLine::show(std::size_t done, std::size_t all) {
    if (!terminal_ || Clock::now() < next_) {
        return;
    }
    next_ = Clock::now() + interval;
    shown_ = true;
    print(Stream::error,
          "\rcalculating: " + std::to_string(done) + " of " + std::to_string(all) + ' ' + things_ + ' ');
}

} // namespace sheet::cli
