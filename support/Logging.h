#pragma once

#include <string>

namespace orvalo {

/// Prints text and one line feed to standard output from the main queue, unchanged, and returns at
/// once: never before the work item that the main thread is at has ended. Lines of one thread stay
/// in order; those that the main queue no longer reaches are lost. Any thread but the render
/// thread.
void debugprint(std::string text);

/// The same; a name of its own tells the call sites apart.
void safeprint(std::string text);

}  // namespace orvalo
