#include "publish/Progress.h"

#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <utility>

namespace mip {

Progress::Progress(std::string what, std::size_t total)
    : what_(std::move(what)), total_(total), isTerminal_(isatty(fileno(stderr)) != 0) {
    Show(what_);
}

Progress::~Progress() {
    Show(std::string(what_.size() + 24, ' '));
    Show("");
}

void Progress::Step() {
    ++done_;
    Show(what_ + ": " + std::to_string(done_) + " of " + std::to_string(total_));
}

void Progress::Show(const std::string& line) {
    if (isTerminal_) {
        std::cerr << '\r' << line << std::flush;
    }
}

}  // namespace mip
