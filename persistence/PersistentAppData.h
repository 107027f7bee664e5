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

/// The application's additions to the platform's store. Any thread.
struct UserDefaultsViews {
    /// A new store for the suite of the application group, sharedContainer. A suite that is refused
    /// is a fatal error.
    static std::shared_ptr<UserDefaults> shared();

    /// UserDefaults::standard(), after the group's suite was added to its search list. From then on
    /// every read of the standard store in this process also finds the group's values.
    static std::shared_ptr<UserDefaults> combined();
};

/// The application's settings. Each operation does one store operation on the view that it names.
/// No operation fails. Any thread.
class PersistentAppData : public NSObject {
  public:
    /// A view of the store.
    enum class Storage : std::int64_t {
        defaults = 0,  ///< The application's own settings.
        shared = 1,    ///< The settings of the application group, which its processes share.
        combined = 2,  ///< Reads the own settings first, then the group's; writes the own ones.
    };

    /// The view of a number from 0 to 2; absent for other numbers.
    static std::optional<Storage> storage(std::int64_t rawValue);

    /// The only instance, created at its first use and never released. It creates the combined
    /// view, so that all reads of the standard store also find the group's values. A refused suite
    /// of the group is a fatal error.
    static const std::shared_ptr<PersistentAppData>& sharedInstance();

    virtual void setString(const std::string& key, const std::string& value,
                           Storage _for = Storage::defaults);
    /// Absent when there is no value, or when it is not a text.
    virtual std::optional<std::string> getString(const std::string& key,
                                                 Storage from = Storage::defaults) const;
    virtual void setInteger(const std::string& key, std::int64_t value,
                            Storage _for = Storage::defaults);
    /// 0 when there is no value. UserDefaults converts other kinds, here and below.
    virtual std::int64_t getInteger(const std::string& key, Storage from = Storage::defaults) const;
    virtual void setFloat(const std::string& key, float value, Storage _for = Storage::defaults);
    /// 0 when there is no value.
    virtual float getFloat(const std::string& key, Storage from = Storage::defaults) const;
    virtual void setBool(const std::string& key, bool value, Storage _for = Storage::defaults);
    /// False when there is no value.
    virtual bool getBool(const std::string& key, Storage from = Storage::defaults) const;
    /// An absent URL removes the key.
    virtual void setURL(const std::string& key, const std::optional<URL>& value,
                        Storage _for = Storage::defaults);
    virtual std::optional<URL> getUrl(const std::string& key,
                                      Storage from = Storage::defaults) const;
    /// An absent value removes the key.
    virtual void setObject(const std::string& key, const std::optional<PropertyList>& value,
                           Storage _for = Storage::defaults);
    virtual std::optional<PropertyList> getObject(const std::string& key,
                                                  Storage from = Storage::defaults) const;

    /// Prints the views standard, shared and combined, each newly created: a header line, then for
    /// each entry the key, " = ", the description and a blank, and an empty line.
    virtual void dumpout() const;

    /// A rectangle as a dictionary of "left", "top", "width" and "height" of its standard form,
    /// each the nearest 32-bit float. Stores nothing.
    static PropertyList::Dictionary frameToDictionary(const CGRect& frame);

    /// The rectangle in such a dictionary, read from the view `defaults`. A missing origin is 0, a
    /// missing extent 100; other keys are ignored. Absent when there is no value, or when it is not
    /// a dictionary of numbers that are exactly 32-bit floats.
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
