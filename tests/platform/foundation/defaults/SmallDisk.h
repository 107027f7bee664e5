#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace orvalo::testing {

/// A disk of 1 MB under the user's configuration of this test program and those that it starts:
/// a file system of its own in memory, which no other program sees. Where the system lets nobody
/// have one, files in the folder that grow up to a size and no further. Tests see the same of both.
class SmallDisk {
  public:
    static constexpr std::size_t kSize = std::size_t{1} << 20U;

    /// The one of the program.
    static SmallDisk& shared();

    /// Puts it in the folder's place. Before any thread is started.
    void mount(const std::filesystem::path& folder);
    void unmount();

    /// As it was at first.
    void empty();
    /// Leaves no room.
    void fill();
    /// Makes room again behind fill(), or beyond the size.
    void makeRoom();
    /// Lets nothing be written at all, until makeRoom().
    void protect();

  private:
    void resize(std::size_t size) const;
    std::filesystem::path ballast() const { return folder_ / "ballast"; }

    std::filesystem::path folder_;
    bool isMounted_ = false;
    bool isProtected_ = false;
};

}  // namespace orvalo::testing
