#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "programs/effect-service/FileConfinement.h"

namespace orvalo {

/// The places that an effect of these bundles needs: the system's programs, libraries and data, the
/// folders of the LV2 path, the bundles and what links in them lead to, fonts and looks of the
/// user's desktop, and the way to the X server; the devices for graphics and chance; and to write,
/// the folder for its files alone.
FilePlaces effectPlaces(const std::vector<std::string>& bundles,
                        const std::filesystem::path& filesFolder);

}  // namespace orvalo
