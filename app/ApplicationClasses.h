#pragma once

namespace orvalo {

/// Makes the classes that the layout and the application's start name by text known, and what
/// their screens hold: web views and effects' UIs. Main thread, once, before the start.
void registerApplicationClasses();

}  // namespace orvalo
