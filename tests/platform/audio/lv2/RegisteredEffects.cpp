#include "tests/platform/audio/lv2/RegisteredEffects.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {

void registerEffects(const std::map<std::string, std::string>& effects) {
    static const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path() / "codes.lv2");
    std::ofstream manifest(folder.path() / "codes.lv2" / "manifest.ttl");
    manifest << "@prefix ac: <urn:tessaly:audio-component#> .\n";
    for (const auto& [subtype, uri] : effects) {
        manifest << "<" << uri << R"(> ac:type "aufx" ; ac:subtype ")" << subtype
                 << R"(" ; ac:manufacturer "REAL" ; ac:name "REAL: )" << subtype << "\" .\n";
    }
    const auto path = folder.path().string() + ":/usr/lib/lv2";
    setenv("LV2_PATH", path.c_str(), 1);
}

}  // namespace orvalo::testing
