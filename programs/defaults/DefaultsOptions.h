#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

/// A command line that makes no sense; its text is one line that names the culprit.
class BadOption : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// What the command line asks of orvalo-defaults.
struct DefaultsOptions {
    enum class Command { help, version, domains, list, read, write, delete_, export_, import };

    Command command = Command::help;
    std::string helpText;               ///< Of help.
    std::string domain;                 ///< Of all from list on.
    std::optional<std::string> key;     ///< Of write; of read and delete when one is given.
    std::optional<PropertyList> value;  ///< Of write.
    std::string file = "-";             ///< Of export and import; "-" is standard output or input.
    bool isXML = false;                 ///< Of export.
    bool isRaw = false;                 ///< Of read.
    bool replaces = false;              ///< Of import.

    /// Reads the command line, without the program's name. Throws BadOption.
    static DefaultsOptions parse(const std::vector<std::string>& arguments);
};

}  // namespace orvalo
