#pragma once

#include <glib.h>

#include <filesystem>
#include <memory>
#include <string>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

using KeyFilePointer = std::unique_ptr<GKeyFile, Release<g_key_file_unref>>;

/// What the application keeps from one run to the next, in $XDG_STATE_HOME/orvalo.
std::filesystem::path stateFile(const std::string& name);

/// Replaces the file. A warning tells why `what`, such as "The window's size", is not saved.
void saveStateFile(const std::string& name, const KeyFilePointer& content, const char* what);

}  // namespace orvalo
