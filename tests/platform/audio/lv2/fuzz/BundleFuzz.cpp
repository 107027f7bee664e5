// Reads the registry and makes units from damaged bundles of the probe's library:
//     lv2_bundle_fuzz ROUNDS FIRST-SEED PROBE-LIBRARY SEED-FOLDER...
// A round depends on its seed alone: "lv2_bundle_fuzz 1 <seed> ..." repeats one. The program prints
// the folder of the bundle. Damaged data can change the meaning of ports, so units are made and
// restored but not run.

#include <glib.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "platform/audio/lv2/LV2World.h"
#include "platform/foundation/NSError.h"
#include "tests/platform/audio/lv2/fuzz/Mutation.h"
#include "tests/testing/FileBytes.h"
#include "tests/testing/TemporaryFolder.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

namespace fs = std::filesystem;

struct Counts {
    int registered = 0;
    int made = 0;
    int refused = 0;
};

void writeBundle(const fs::path& seed, const fs::path& bundle, std::mt19937& generator) {
    fs::remove_all(bundle);
    fs::create_directories(bundle);
    std::vector<fs::path> files;
    for (const auto& item : fs::directory_iterator(seed)) {
        if (item.path().extension() == ".ttl") {
            files.push_back(item.path());
        }
    }
    std::sort(files.begin(), files.end());
    const auto victim = generator() % files.size();
    for (std::size_t index = 0; index < files.size(); ++index) {
        const auto text = bytesOf(files[index]);
        std::ofstream(bundle / files[index].filename(), std::ios::binary)
            << (index == victim ? mutated(text, generator) : text);
    }
}

void use(const fs::path& path, Counts& counts) {
    LV2World world({{path}, path / "none"});
    std::vector<std::string> uris{"urn:orvalo:zoo:probe"};
    for (const auto& component : world.components()) {
        ++counts.registered;
        uris.push_back(component->uri);
    }
    for (const auto& uri : uris) {
        try {
            LV2LocalAudioUnit unit(world, uri, {});
            ++counts.made;
            for (const auto& preset : unit.factoryPresets()) {
                unit.setCurrentPreset(preset);
            }
            unit.allocateRenderResources(44100.0);
        } catch (const NSError&) {
            ++counts.refused;
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 5) {
        std::fputs("lv2_bundle_fuzz ROUNDS FIRST-SEED PROBE-LIBRARY SEED-FOLDER...\n", stderr);
        return 2;
    }
    const long rounds = std::strtol(argv[1], nullptr, 10);
    const long first = std::strtol(argv[2], nullptr, 10);
    g_log_set_default_handler([](auto, auto, auto, auto) {}, nullptr);
    const TemporaryFolder folder;
    std::fprintf(stderr, "in %s\n", folder.path().c_str());
    Counts counts;
    for (long seed = first; seed < first + rounds; ++seed) {
        std::mt19937 generator(static_cast<std::mt19937::result_type>(seed));
        const auto bundle = folder.path() / "bundle.lv2";
        writeBundle(argv[4 + static_cast<int>(generator() % static_cast<unsigned>(argc - 4))],
                    bundle, generator);
        fs::create_symlink(argv[3], bundle / "probe.so");
        std::fprintf(stderr, "seed %ld\n", seed);
        use(folder.path(), counts);
    }
    std::printf("%ld rounds: %d registered, %d made, %d refused\n", rounds, counts.registered,
                counts.made, counts.refused);
    // Each path must have been reached.
    return counts.registered > 0 && counts.made > 0 && counts.refused > 0 ? 0 : 1;
}
