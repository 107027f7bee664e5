#include "support/FileLocations.h"

#include "platform/foundation/Bundle.h"
#include "platform/foundation/FatalError.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/NSError.h"
#include "support/Logging.h"
#include "support/Unwrapped.h"

namespace orvalo {

namespace {

// Named after a class of the effect, so that the lines of both look alike.
constexpr auto kOrigin = "AudioUnitViewController::getPaths() : ";

void logLocation(const std::string& kind, const std::optional<URL>& url) {
    if (url) {
        safeprint(kOrigin + ("Audio Unit's " + kind + " path is: ") + url->path());
    } else {
        safeprint(kOrigin + ("ERROR: Audio Unit's " + kind + " path is nil."));
    }
}

}  // namespace

void getPaths() {
    const auto documents = FileManager::default_().urls(SearchPathDirectory::documentDirectory,
                                                        SearchPathDomainMask::userDomainMask);
    if (documents.empty()) {
        fatalError("Index out of range");
    }
    documentsURL = documents.front();
    logLocation("documents", documentsURL);

    const auto resources = Bundle::main()->resourceURL();
    resourcesURL = unwrapped(resources);
    logLocation("resources", resourcesURL);
}

bool ensureDirectoryExists(const URL& url) {
    auto& files = FileManager::default_();
    if (files.fileExists(url.path())) {
        return true;
    }
    try {
        files.createDirectory(url, true);
        return true;
    } catch (const NSError& error) {
        debugprint("ensureDirectoryExists() : ERROR: Creating required directory '" + url.path() +
                   "' failed: " + error.localizedDescription());
        return false;
    }
}

}  // namespace orvalo
