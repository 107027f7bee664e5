#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/NSObject.h"
#include "platform/foundation/URL.h"

namespace orvalo {

/// The tree that the program was started from: <prefix>/bin/<program>, <prefix>/share/orvalo,
/// <prefix>/lib/lv2, <prefix>/libexec/orvalo. Found from the executable alone. Any thread.
class Bundle : public NSObject {
  public:
    /// The bundle of the running program.
    static const std::shared_ptr<Bundle>& main();

    /// <prefix>/share/orvalo; absent when it is no directory.
    std::optional<URL> resourceURL() const;
    /// The resource's file "<forResource>.<withExtension>"; absent when there is no such file.
    virtual std::optional<URL> url(std::string_view forResource,
                                   std::string_view withExtension) const;
    /// What the bundle says of itself under a key of share/orvalo/Info.ini, group [Bundle], such as
    /// "Identifier"; absent without the file or the key.
    std::optional<std::string> infoValue(const std::string& key) const;
    /// <prefix>/share, whether it is there or not: what desktops look for in data folders, such as
    /// icons.
    URL dataURL() const;
    /// <prefix>/lib/lv2, whether it is there or not: where the application's own effects live.
    URL effectsURL() const;
    /// <prefix>/libexec/orvalo/<name>, whether it is there or not: a program that others start.
    URL helperURL(std::string_view name) const;

    explicit Bundle(URL prefix);  ///< A bundle at another place.

  private:
    URL prefix_;
};

}  // namespace orvalo
