#pragma once

#include <filesystem>
#include <vector>

namespace orvalo {

/// What a process may do with files: nothing outside of these places. Places that are not there are
/// no error; folders stand for all that is in them.
struct FilePlaces {
    std::vector<std::filesystem::path> readable;  ///< And executable.
    std::vector<std::filesystem::path> devices;   ///< Readable and writable, nothing made there.
    std::vector<std::filesystem::path> writable;  ///< For everything.
};

/// Confines this thread, and what it starts from now on, to the places, for good; also takes away
/// connections over the network and signals to other processes where the kernel knows how
/// (Landlock, from Linux 5.13). What it does not is logged.
void confineFiles(const FilePlaces& places);

}  // namespace orvalo
