#pragma once

namespace orvalo {

/// From here on GLib's log goes to standard error. In this program's own messages control
/// characters are escaped, because names of files and plug-ins may contain them: a message is one
/// line without terminal commands. Call it once, before any thread starts.
void logToStandardError();

}  // namespace orvalo
