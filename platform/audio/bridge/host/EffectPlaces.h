#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orvalo {

/// What an effect may use of the machine's files, beside the system's, which are read-only.
struct EffectPlaces {
    std::vector<std::string> bundles{};  ///< Read-only.
    /// A folder that exists; a file system of limited size covers it.
    std::string scratch{};
    std::vector<std::filesystem::path> writable{};  ///< Folders; missing ones are ignored.
    bool hasPluginUI = false;  ///< Whether it may use the X server and graphics.
};

/// The command that runs a program in namespaces of its own, where it sees these places alone:
/// bubblewrap's arguments, the program last. The environment is this process's.
std::vector<std::string> confinedCommand(const std::filesystem::path& program,
                                         const EffectPlaces& places);

}  // namespace orvalo
