#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/NSObject.h"
#include "platform/foundation/URL.h"

namespace orvalo {

/// An installed tree: <prefix>/bin/<program>, <prefix>/share/orvalo, <prefix>/lib/lv2,
/// <prefix>/libexec/orvalo. Any thread.
class Bundle : public NSObject {
  public:
    /// The bundle of the running program, found from the path of its executable.
    static const std::shared_ptr<Bundle>& main();

    /// <prefix>/share/orvalo; absent when there is no such directory.
    std::optional<URL> resourceURL() const;
    /// The file "<forResource>.<withExtension>" of the resources; absent when there is none.
    virtual std::optional<URL> url(std::string_view forResource,
                                   std::string_view withExtension) const;
    /// The value of a key such as "Identifier" in share/orvalo/Info.ini, group [Bundle]; absent
    /// without the file or the key.
    std::optional<std::string> infoValue(const std::string& key) const;

    // The paths of files and folders that need not exist.

    /// <prefix>/share: the data folder, with the icons.
    URL dataURL() const;
    /// <prefix>/lib/lv2: the application's own effects.
    URL effectsURL() const;
    /// <prefix>/libexec/orvalo/<name>: a program that other programs start.
    URL helperURL(std::string_view name) const;

    explicit Bundle(URL prefix);

  private:
    URL prefix_;
};

}  // namespace orvalo
