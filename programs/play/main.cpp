#include <glib.h>

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <stdexcept>

#include "platform/audio/engine/EffectLoading.h"
#include "platform/audio/file/AVAudioFile.h"
#include "platform/foundation/NSError.h"
#include "platform/foundation/Print.h"
#include "programs/play/OfflineRender.h"
#include "programs/play/Performance.h"
#include "programs/play/PlayOptions.h"
#include "programs/play/RegistryTable.h"

namespace {

constexpr int kBadOption = 2;

/// A line of the program's own, as bad options and files deserve.
int complain(const char* message, int status) {
    std::fprintf(stderr, "orvalo-play: %s\n", message);
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    using namespace orvalo;
    // NOLINTBEGIN(concurrency-mt-unsafe): there is one thread yet.
    std::setlocale(LC_ALL, "");
    // Numbers in lines and files read the same everywhere.
    std::setlocale(LC_NUMERIC, "C");
    // NOLINTEND(concurrency-mt-unsafe)
    g_log_writer_default_set_use_stderr(TRUE);

    PlayOptions options;
    std::optional<OfflineRender> render;
    try {
        options = PlayOptions::parse(argc, argv);
        if (options.list) {
            print(registryTable());
            return EXIT_SUCCESS;
        }
        if (options.inProcess) {
            setPlatformEffectLoading(EffectLoading::inProcess);
        }
        if (options.render) {
            render.emplace(options);
        } else if (options.file) {
            // What cannot be opened is told before anything starts.
            AVAudioFile::forReading(URL::fileURLWithPath(*options.file));
        }
    } catch (const std::exception& error) {
        return complain(error.what(), kBadOption);
    }

    if (render) {
        try {
            render->run();
        } catch (const NSError& error) {
            return complain(error.what(), EXIT_FAILURE);
        }
        return EXIT_SUCCESS;
    }
    Performance::run(options);
    return EXIT_SUCCESS;
}
