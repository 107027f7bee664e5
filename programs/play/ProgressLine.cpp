#include "programs/play/ProgressLine.h"

#include <unistd.h>

#include <cstdio>

#include "platform/foundation/OneLine.h"

namespace orvalo {

namespace {

constexpr auto kEraseToEndOfLine = "\033[K";

}  // namespace

ProgressLine::ProgressLine() : isTerminal_(isatty(STDERR_FILENO) == 1) {}

ProgressLine::~ProgressLine() {
    hide();
}

void ProgressLine::show(const std::string& text) {
    if (isTerminal_ && text != shown_) {
        std::fprintf(stderr, "%s%s\r", onOneLine(text).c_str(), kEraseToEndOfLine);
        shown_ = text;
    }
}

void ProgressLine::hide() {
    if (!shown_.empty()) {
        std::fputs(kEraseToEndOfLine, stderr);
        shown_.clear();
    }
}

}  // namespace orvalo
