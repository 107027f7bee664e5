#pragma once

namespace orvalo {

/// Sends what libjack and libasound would write to standard error to GLib's log, as debug messages.
/// Any control thread; needed anew after an RtApiJack was made, which takes libjack's.
void takeLibraryMessages();

}  // namespace orvalo
