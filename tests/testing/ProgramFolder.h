#pragma once

#include <filesystem>

namespace orvalo::testing {

/// The one folder that a test program and the processes it starts make their temporary folders in.
/// It goes with the object, and with it what processes left there that were killed or aborted.
class ProgramFolder {
  public:
    /// Makes the folder and names it in the environment; nothing where the environment names one
    /// already, as a death test's does. On the main thread, before any other is started. Throws
    /// std::system_error.
    ProgramFolder();
    ~ProgramFolder();
    ProgramFolder(const ProgramFolder&) = delete;
    ProgramFolder& operator=(const ProgramFolder&) = delete;

    /// A new folder inside it; in a program that has none, among the system's temporary files. Any
    /// thread. Throws std::system_error.
    static std::filesystem::path makeFolder();

  private:
    std::filesystem::path made_;
};

}  // namespace orvalo::testing
