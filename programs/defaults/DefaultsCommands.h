#pragma once

#include "programs/defaults/DefaultsOptions.h"

namespace orvalo {

/// Does what the options ask. Throws BadOption for a name that no domain can have, NSError or
/// FormatError when it cannot be done; all settings are as they were then, and the error's text is
/// one line that names the culprit.
void runDefaultsCommand(const DefaultsOptions& options);

}  // namespace orvalo
