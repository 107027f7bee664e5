#include "app/play/ProgressLine.h"

#include <unistd.h>

#include <cstdio>

namespace orvalo {

ProgressLine::ProgressLine() : isTerminal_(isatty(STDERR_FILENO) == 1) {}

ProgressLine::~ProgressLine() {
    if (hasText_) {
        std::fputc('\n', stderr);
    }
}

void ProgressLine::show(std::string_view text) {
    if (isTerminal_) {
        // Back to the start of the line, the text, and away with what stood behind it.
        std::fprintf(stderr, "\r%.*s\033[K", static_cast<int>(text.size()), text.data());
        hasText_ = true;
    }
}

}  // namespace orvalo
