#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "platform/audio/engine/EffectLoading.h"
#include "platform/audio/file/AVAudioFile.h"
#include "platform/foundation/NSError.h"
#include "platform/foundation/OneLine.h"
#include "platform/foundation/StandardErrorLog.h"
#include "programs/play/EffectChoice.h"
#include "programs/play/OfflineRender.h"
#include "programs/play/Performance.h"
#include "programs/play/PlayOptions.h"
#include "programs/play/RegistryTable.h"

namespace {

/// Also for files that cannot be read or written.
constexpr int kBadOption = 2;

/// Prints an error and returns the exit status.
int fail(const char* message, int status) {
    std::fprintf(stderr, "orvalo-play: %s\n", orvalo::onOneLine(message).c_str());
    return status;
}

/// Writes to standard output.
void show(const std::string& table) {
    if (std::puts(table.c_str()) == EOF || std::fflush(stdout) != 0) {
        throw orvalo::NSError::posix(errno, "standard output");
    }
}

}  // namespace

int main(int argc, char** argv) {
    using namespace orvalo;
    // NOLINTBEGIN(concurrency-mt-unsafe): there is only one thread.
    std::setlocale(LC_ALL, "");
    // Numbers in lines and files do not depend on the locale.
    std::setlocale(LC_NUMERIC, "C");
    // NOLINTEND(concurrency-mt-unsafe)
    logToStandardError();

    // What is larger than files may be is then an error like others.
    std::signal(SIGXFSZ, SIG_IGN);

    PlayOptions options;
    std::optional<EffectChoice> choice;
    std::optional<OfflineRender> render;
    try {
        options = PlayOptions::parse(argc, argv);
        if (options.list) {
            show(options.all ? installedTable() : registryTable());
            return EXIT_SUCCESS;
        }
        if (options.inProcess) {
            setPlatformEffectLoading(EffectLoading::inProcess);
        }
        choice.emplace(options);
        if (options.render) {
            render.emplace(options);
        } else if (options.file) {
            // Reports an unreadable file before anything starts.
            const auto file = AVAudioFile::forReading(URL::fileURLWithPath(*options.file));
            setExpectedRendering({.sampleRate = file->processingFormat().sampleRate});
        }
    } catch (const std::exception& error) {
        return fail(error.what(), kBadOption);
    }

    if (render) {
        try {
            render->run(*choice);
        } catch (const NSError& error) {
            const bool isOfFile = error.domain() == "NSPOSIXErrorDomain";
            return fail(error.what(), isOfFile ? kBadOption : EXIT_FAILURE);
        }
        return EXIT_SUCCESS;
    }
    Performance::run(options, *choice);
    return EXIT_SUCCESS;
}
