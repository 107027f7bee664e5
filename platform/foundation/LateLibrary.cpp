#include "platform/foundation/LateLibrary.h"

#include <dlfcn.h>

#include <string>

#include "platform/foundation/ExecutablePath.h"
#include "platform/foundation/FatalError.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

std::string loaderError() {
    return dlerror();  // NOLINT(concurrency-mt-unsafe): the text is per thread.
}

}  // namespace

LateLibrary::LateLibrary(const char* name) {
    const auto prefix = executablePath().parent_path().parent_path();
    const auto file = prefix / "lib/orvalo" / (std::string(name) + ".so");
    handle_ = dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL);
    if (handle_ == nullptr) {
        throw NSError("LibraryErrorDomain", 0, loaderError());
    }
}

void* LateLibrary::function(const char* name) const {
    // Also searches the libraries that this one is linked with.
    void* const address = dlsym(handle_, name);
    if (address == nullptr) {
        fatalError(loaderError());
    }
    return address;
}

}  // namespace orvalo
