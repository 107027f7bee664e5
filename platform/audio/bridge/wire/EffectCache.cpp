#include "platform/audio/bridge/wire/EffectCache.h"

#include <glib.h>

#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/UserFolders.h"

namespace orvalo {

std::filesystem::path effectCacheFolder(const std::string& uri) {
    const GText name(g_compute_checksum_for_string(G_CHECKSUM_SHA256, uri.c_str(), -1));
    return userCacheFolder() / "orvalo" / "effects" / name.get();
}

}  // namespace orvalo
