#include "programs/effect-service/FileConfinement.h"

#include <fcntl.h>
#include <glib.h>
#include <linux/landlock.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>

#include "platform/foundation/FileDescriptor.h"

namespace orvalo {

namespace {

// Parts of Landlock's interface that Debian 12's headers lack; see userspace-api/landlock in the
// kernel's documentation.
struct RulesetAttributes {
    std::uint64_t files;
    std::uint64_t network;  // From the fourth version.
    std::uint64_t scopes;   // From the sixth version.
};
constexpr std::uint64_t kTruncate = 1U << 14U;    // From the third version.
constexpr std::uint64_t kBindAndConnect = 0b11U;  // TCP.
constexpr std::uint64_t kSignalScope = 1U << 1U;

constexpr std::uint64_t kRead =
    LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
// Programs open devices with O_TRUNC too.
constexpr std::uint64_t kUse = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR |
                               LANDLOCK_ACCESS_FS_WRITE_FILE | kTruncate;
// The rights that a rule for a file, not a folder, may have.
constexpr std::uint64_t kOfFiles = LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_READ_FILE |
                                   LANDLOCK_ACCESS_FS_WRITE_FILE | kTruncate;

std::uint64_t allOfFiles(long version) {
    // Version 1 has the thirteen lowest bits.
    auto rights = (std::uint64_t{1} << 13U) - 1;
    if (version >= 2) {
        rights |= LANDLOCK_ACCESS_FS_REFER;
    }
    return version >= 3 ? rights | kTruncate : rights;
}

/// A ruleset under construction.
class Ruleset {
  public:
    explicit Ruleset(long version) : rights_(allOfFiles(version)) {
        const RulesetAttributes attributes{
            .files = rights_,
            .network = version >= 4 ? kBindAndConnect : 0,
            .scopes = version >= 6 ? kSignalScope : 0,
        };
        constexpr std::array<std::size_t, 7> kSizes{0, 8, 8, 8, 16, 16, 24};
        const auto size = kSizes[static_cast<std::size_t>(std::min(version, 6L))];
        descriptor_ = FileDescriptor(
            static_cast<int>(syscall(SYS_landlock_create_ruleset, &attributes, size, 0)));
    }

    bool allow(const std::vector<std::filesystem::path>& places, std::uint64_t rights) {
        return std::all_of(places.begin(), places.end(), [this, rights](const auto& place) {
            return allow(place, rights & rights_);
        });
    }

    bool enforce() const { return syscall(SYS_landlock_restrict_self, descriptor_.get(), 0) == 0; }

    explicit operator bool() const { return static_cast<bool>(descriptor_); }

  private:
    bool allow(const std::filesystem::path& place, std::uint64_t rights) const {
        const FileDescriptor file(open(place.c_str(), O_PATH | O_CLOEXEC));
        struct stat status {};
        if (!file || fstat(file.get(), &status) != 0) {
            return true;
        }
        landlock_path_beneath_attr rule{};
        rule.allowed_access = S_ISDIR(status.st_mode) ? rights : rights & kOfFiles;
        rule.parent_fd = file.get();
        return syscall(SYS_landlock_add_rule, descriptor_.get(), LANDLOCK_RULE_PATH_BENEATH, &rule,
                       0) == 0;
    }

    const std::uint64_t rights_;
    FileDescriptor descriptor_;
};

}  // namespace

void confineFiles(const FilePlaces& places) {
    const long version =
        syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    if (version < 1) {
        g_info("The kernel has no Landlock; the effect may use all files.");
        return;
    }
    Ruleset rules(version);
    if (!rules || !rules.allow(places.readable, kRead) || !rules.allow(places.devices, kUse) ||
        !rules.allow(places.writable, ~std::uint64_t{0}) || !rules.enforce()) {
        g_message("The kernel refuses to confine files (%s); the effect may use all files.",
                  g_strerror(errno));
    }
}

}  // namespace orvalo
