#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "programs/effect-service/FileConfinement.h"

namespace orvalo {

/// The places that an effect needs. Readable: the system's programs, libraries and data, the LV2
/// path, the bundles and the targets of their links, the desktop's fonts and themes, the X server's
/// socket. Devices: graphics and random numbers. Writable: filesFolder and cacheFolder alone.
FilePlaces effectPlaces(const std::vector<std::string>& bundles,
                        const std::filesystem::path& filesFolder,
                        const std::filesystem::path& cacheFolder);

}  // namespace orvalo
