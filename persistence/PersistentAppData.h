#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/foundation/CGRect.h"
#include "platform/foundation/NSObject.h"
#include "platform/foundation/URL.h"
#include "platform/foundation/defaults/UserDefaults.h"

namespace orvalo {

/// The application's settings. Each operation names the view of the store that it means and does
/// one store operation on it; nothing is kept here, and no operation fails. Any thread.
class PersistentAppData : public NSObject {
  public:
    /// A view of the store. Any value but the first two counts as combined.
    enum class Storage : std::int64_t {
        defaults = 0,  ///< The application's own settings.
        shared = 1,    ///< Those of the application group, which every process of it has.
        combined = 2,  ///< Reads the own ones first, then the group's; writes the own ones.
    };

    /// The view of that number, 0 to 2; absent for any other.
    static std::optional<Storage> storage(std::int64_t rawValue);

    /// The one instance, made at its first use, never released. From then on reads of the
    /// process's standard store fall back on the group's suite; see UserDefaultsViews. A group's
    /// suite that cannot be had is a fatal error.
    static const std::shared_ptr<PersistentAppData>& sharedInstance();

    virtual void setString(const std::string& key, const std::string& value,
                           Storage _for = Storage::defaults);
    /// Absent when there is no value, or one that is no text.
    virtual std::optional<std::string> getString(const std::string& key,
                                                 Storage from = Storage::defaults) const;
    virtual void setInteger(const std::string& key, std::int64_t value,
                            Storage _for = Storage::defaults);
    /// 0 when there is no value; other kinds convert as UserDefaults says, here and below.
    virtual std::int64_t getInteger(const std::string& key, Storage from = Storage::defaults) const;
    virtual void setFloat(const std::string& key, float value, Storage _for = Storage::defaults);
    /// 0 when there is no value.
    virtual float getFloat(const std::string& key, Storage from = Storage::defaults) const;
    virtual void setBool(const std::string& key, bool value, Storage _for = Storage::defaults);
    /// False when there is no value.
    virtual bool getBool(const std::string& key, Storage from = Storage::defaults) const;
    /// An absent address removes the key.
    virtual void setURL(const std::string& key, const std::optional<URL>& value,
                        Storage _for = Storage::defaults);
    virtual std::optional<URL> getUrl(const std::string& key,
                                      Storage from = Storage::defaults) const;
    /// An absent value removes the key.
    virtual void setObject(const std::string& key, const std::optional<PropertyList>& value,
                           Storage _for = Storage::defaults);
    virtual std::optional<PropertyList> getObject(const std::string& key,
                                                  Storage from = Storage::defaults) const;

    /// Prints the three views, standard, shared and combined, each taken afresh: a header, then
    /// each entry as its key, " = ", its textual form and a blank, with an empty line behind it.
    virtual void dumpout() const;

    /// A rectangle as a dictionary, to be stored as one value: "left", "top", "width" and "height"
    /// of its standard form, each the nearest 32-bit float. Stores nothing.
    static PropertyList::Dictionary frameToDictionary(const CGRect& frame);

    /// The rectangle that such a dictionary in the view `defaults` stands for. What it lacks is 0
    /// for an origin and 100 for an extent; further keys say nothing. Absent when there is no
    /// value, or one that is not a dictionary of numbers alone, each of them exactly a 32-bit float
    /// (a truth value is no number).
    static std::optional<CGRect> dictionaryToFrame(const std::string& key);

  protected:
    PersistentAppData();

  private:
    UserDefaults& view(Storage storage) const;

    const std::shared_ptr<UserDefaults> defaults;
    const std::shared_ptr<UserDefaults> shared;
    const std::shared_ptr<UserDefaults> combined;
};

}  // namespace orvalo
