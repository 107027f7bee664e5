#include "platform/audio/bridge/wire/EffectCache.h"

#include <glib.h>
#include <sys/stat.h>

#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/UserFolders.h"

namespace orvalo {

std::filesystem::path effectCacheFolder(const std::string& uri) {
    const GText name(g_compute_checksum_for_string(G_CHECKSUM_SHA256, uri.c_str(), -1));
    auto folder = userCacheFolder() / "orvalo" / "effects" / name.get();
    g_mkdir_with_parents(folder.c_str(), S_IRWXU);
    return folder;
}

}  // namespace orvalo
