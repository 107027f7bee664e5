#pragma once

#include <filesystem>
#include <string>

#include "platform/foundation/FileDescriptor.h"

namespace orvalo {

/// A temporary folder of this process. It is removed with its contents by the destructor, when the
/// process exits, or, after a process that was killed, by the user's next ProcessFolder of the same
/// kind. Any thread.
class ProcessFolder {
  public:
    /// kind: the start of its name. Throws NSError.
    explicit ProcessFolder(const std::string& kind);
    ~ProcessFolder();
    ProcessFolder(const ProcessFolder&) = delete;
    ProcessFolder& operator=(const ProcessFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
    FileDescriptor lock_;  ///< Locks the folder; the kernel unlocks it with the process.
};

}  // namespace orvalo
