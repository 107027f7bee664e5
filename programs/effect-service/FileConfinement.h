#pragma once

#include <filesystem>
#include <vector>

namespace orvalo {

/// The only files that a process may use. A folder includes its contents; missing places are
/// ignored.
struct FilePlaces {
    std::vector<std::filesystem::path> readable;  ///< Readable and executable.
    std::vector<std::filesystem::path> devices;   ///< Readable and writable.
    std::vector<std::filesystem::path> writable;  ///< All rights.
};

/// Confines this thread and its later children to the places, irrevocably (Landlock, from Linux
/// 5.13). Newer kernels also forbid TCP and signals to other processes. Logs when the kernel cannot
/// confine files.
void confineFiles(const FilePlaces& places);

}  // namespace orvalo
