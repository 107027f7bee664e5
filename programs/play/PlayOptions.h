#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

namespace orvalo {

/// What the command line asks of orvalo-play.
struct PlayOptions {
    std::optional<std::int64_t> passes;  ///< Above 0.
    std::optional<double> seconds;       ///< Above 0, finite.
    std::optional<std::string> render;   ///< A path to write to.
    std::optional<std::string> file;     ///< A path to play.
    bool list = false;
    bool inProcess = false;  ///< To load the effect in this program's process.

    /// Reads the command line. --help prints the help on standard output and ends the program with
    /// status 0. Throws BadOption.
    static PlayOptions parse(int argc, char** argv);
};

/// A command line that makes no sense; its text is one line that names the culprit.
class BadOption : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace orvalo
