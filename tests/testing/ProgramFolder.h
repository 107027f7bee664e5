#pragma once

#include <filesystem>

namespace orvalo::testing {

/// The folder in which a test program and the processes that it starts make their temporary
/// folders. The destructor removes it with the files that killed processes left there.
class ProgramFolder {
  public:
    /// Makes the folder and names it in the environment. Does nothing when the environment names
    /// one already, as in the process of a death test. Call before any thread starts. Throws
    /// std::system_error.
    ProgramFolder();
    ~ProgramFolder();
    ProgramFolder(const ProgramFolder&) = delete;
    ProgramFolder& operator=(const ProgramFolder&) = delete;

    /// A new folder inside it, or in the system's temporary folder when the program has none. Any
    /// thread. Throws std::system_error.
    static std::filesystem::path makeFolder();

  private:
    std::filesystem::path made_;
};

}  // namespace orvalo::testing
