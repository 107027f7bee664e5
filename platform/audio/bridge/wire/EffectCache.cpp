#include "platform/audio/bridge/wire/EffectCache.h"

#include <glib.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/UserFolders.h"

namespace orvalo {

namespace fs = std::filesystem;

fs::path effectCacheFolder(const std::string& uri) {
    const GText name(g_compute_checksum_for_string(G_CHECKSUM_SHA256, uri.c_str(), -1));
    return userCacheFolder() / "orvalo" / "effects" / name.get();
}

bool isEffectCacheLarger(const fs::path& folder, std::uint64_t limit) {
    constexpr std::uint64_t kBlock = 512;
    constexpr std::uint64_t kEntry = 4096;  // Of an empty file, too.
    std::uint64_t size = 0;
    std::error_code error;
    for (fs::recursive_directory_iterator item(folder, error), end;
         !error && item != end && size <= limit; item.increment(error)) {
        struct stat status {};
        if (lstat(item->path().c_str(), &status) == 0) {
            size += std::max(static_cast<std::uint64_t>(status.st_blocks) * kBlock, kEntry);
        } else if (errno != ENOENT) {
            return true;
        }
    }
    return size > limit || (error && error != std::errc::no_such_file_or_directory);
}

void removeEffectCache(const fs::path& folder) {
    constexpr auto kSkips = fs::directory_options::skip_permission_denied;
    std::error_code error;
    std::error_code ignored;
    fs::permissions(folder, fs::perms::owner_all, ignored);
    for (fs::recursive_directory_iterator item(folder, kSkips, error), end; !error && item != end;
         item.increment(error)) {
        // Before the iterator enters it.
        if (fs::is_directory(item->symlink_status(ignored))) {
            fs::permissions(item->path(), fs::perms::owner_all, ignored);
        }
    }
    fs::remove_all(folder, ignored);
}

}  // namespace orvalo
