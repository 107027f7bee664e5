#include <fcntl.h>
#include <glib.h>
#include <unistd.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "platform/foundation/NSError.h"
#include "programs/defaults/DefaultsCommands.h"
#include "programs/defaults/DefaultsOptions.h"
#include "programs/defaults/format/Escaped.h"

namespace {

constexpr int kBadOption = 2;

/// Has every standard file that is closed fail, and not be the next file that is opened.
void occupyStandardFiles() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) < 0) {
            open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

int complain(const char* message, int status) {
    std::fprintf(stderr, "orvalo-defaults: %s\n", message);
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    occupyStandardFiles();
    // NOLINTBEGIN(concurrency-mt-unsafe): there is one thread.
    std::setlocale(LC_ALL, "");
    // Numbers read the same everywhere.
    std::setlocale(LC_NUMERIC, "C");
    // NOLINTEND(concurrency-mt-unsafe)
    g_log_writer_default_set_use_stderr(TRUE);
    try {
        orvalo::runDefaultsCommand(orvalo::DefaultsOptions::parse({argv + 1, argv + argc}));
        return EXIT_SUCCESS;
    } catch (const orvalo::BadOption& error) {
        return complain(error.what(), kBadOption);
    } catch (const orvalo::NSError& error) {
        // The platform names paths and keys as they are.
        return complain(orvalo::escaped(error.what()).c_str(), EXIT_FAILURE);
    } catch (const std::exception& error) {
        return complain(error.what(), EXIT_FAILURE);
    }
}
