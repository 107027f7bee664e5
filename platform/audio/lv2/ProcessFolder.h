#pragma once

#include <filesystem>
#include <string>

#include "platform/foundation/FileDescriptor.h"

namespace orvalo {

/// A folder of this process in the system's temporary place. It goes with the object and takes what
/// is in it along; with the process, when that exits sooner; and after a process that was killed,
/// with the next folder of the same kind that anybody of the same user makes. Any thread.
class ProcessFolder {
  public:
    /// kind: what its name begins with. Throws NSError when it cannot be made.
    explicit ProcessFolder(const std::string& kind);
    ~ProcessFolder();
    ProcessFolder(const ProcessFolder&) = delete;
    ProcessFolder& operator=(const ProcessFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
    FileDescriptor lock_;  ///< Holds the folder's lock, which the kernel lets go with the process.
};

}  // namespace orvalo
