#pragma once

#include <gtk/gtk.h>

#include <functional>

namespace orvalo {

/// A widget around a screen's one widget that tells when the screen is laid out: laidOut runs after
/// each time that the screen gets its place and extent.
GtkWidget* newScreenBin(GtkWidget* screen, std::function<void()> laidOut);

}  // namespace orvalo
