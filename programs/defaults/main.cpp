#include <glib.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "platform/foundation/NSError.h"
#include "platform/foundation/StandardErrorLog.h"
#include "programs/defaults/DefaultsCommands.h"
#include "programs/defaults/format/Escaped.h"

namespace {

int complain(const char* message, int status) {
    std::fprintf(stderr, "orvalo-defaults: %s\n", message);
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    std::setlocale(LC_ALL, "");  // NOLINT(concurrency-mt-unsafe): there is one thread.
    orvalo::logToStandardError();
    try {
        orvalo::runDefaultsCommand(orvalo::CommandLine::parse(argc, argv));
        return EXIT_SUCCESS;
    } catch (const orvalo::BadOption& error) {
        constexpr int badOption = 2;
        return complain(error.what(), badOption);
    } catch (const orvalo::NSError& error) {
        // The platform's text has paths and keys as they are.
        return complain(orvalo::escaped(error.what()).c_str(), EXIT_FAILURE);
    } catch (const std::exception& error) {
        return complain(error.what(), EXIT_FAILURE);
    }
}
