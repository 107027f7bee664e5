#pragma once

#include <string>

namespace orvalo {

/// Prints text and one line feed to standard output, unchanged, as a new item of the main queue,
/// and returns at once. Lines of one thread stay in order. Lines still queued at the program's end
/// are lost. Any thread but the render thread.
void debugprint(std::string text);

/// Same as debugprint().
void safeprint(std::string text);

}  // namespace orvalo
