#include "platform/foundation/LastingLibrary.h"

#include <dlfcn.h>

#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

void* required(void* found) {
    if (found == nullptr) {
        // The text is per thread.
        const char* reason = dlerror();  // NOLINT(concurrency-mt-unsafe)
        throw NSError("LibraryErrorDomain", 0, reason);
    }
    return found;
}

}  // namespace

LastingLibrary::LastingLibrary(const std::string& name)
    : handle_(required(dlopen(name.c_str(), RTLD_LAZY | RTLD_LOCAL))) {}

LastingLibrary::Symbol LastingLibrary::operator[](const char* function) const {
    return Symbol(required(dlsym(handle_, function)));
}

}  // namespace orvalo
