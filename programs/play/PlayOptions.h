#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvalo {

/// The command line of orvalo-play.
struct PlayOptions {
    std::optional<std::int64_t> passes;  ///< Above 0.
    std::optional<double> seconds;       ///< Above 0, finite.
    std::optional<std::string> render;   ///< A path to write to.
    std::optional<std::string> file;     ///< A path to play.
    std::optional<std::string> effect;   ///< The URI of a plug-in, or the path of its bundle.
    std::optional<std::string> preset;   ///< A preset's name or URI.
    std::vector<std::string> settings;   ///< Each SYMBOL=VALUE, as given.
    bool list = false;
    bool all = false;        ///< With list: all installed effects.
    bool inProcess = false;  ///< Load the effect in this process.

    /// Throws std::runtime_error, whose text is one line that names the option. --help prints the
    /// help on standard output and ends the program with status 0.
    static PlayOptions parse(int argc, char** argv);
};

}  // namespace orvalo
