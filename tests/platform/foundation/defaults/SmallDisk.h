#pragma once

#include <cstddef>
#include <filesystem>

namespace orvalo::testing {

/// A disk of 1 MB for the settings of this test program and its children: a file system in memory
/// that no other program sees. Where the system refuses one, a limit on the size of files, which
/// has the same effects.
class SmallDisk {
  public:
    static constexpr std::size_t kSize = std::size_t{1} << 20U;

    /// The only instance.
    static SmallDisk& shared();

    /// Mounts the disk over the folder. Call before any thread starts.
    void mount(const std::filesystem::path& folder);
    void unmount();

    /// Removes all files and restores the size: the state right after mount().
    void empty();
    /// Fills the disk.
    void fill();
    /// Makes room again after fill() or protect().
    void makeRoom();
    /// Makes the disk read-only until makeRoom().
    void protect();

  private:
    void resize(std::size_t size) const;
    std::filesystem::path ballast() const { return folder_ / "ballast"; }

    std::filesystem::path folder_;
    bool isMounted_ = false;
    bool isProtected_ = false;
};

}  // namespace orvalo::testing
