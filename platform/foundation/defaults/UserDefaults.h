#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/NSObject.h"
#include "platform/foundation/URL.h"
#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

class DefaultsDomain;

/// Settings of the user: values under keys, in a domain that all processes of the user share. A
/// write is stored when it returns, and every process sees it at its next read. Any thread.
///
/// No operation fails towards its caller. A value that cannot be stored (a full or read-only disk,
/// a text that is not UTF-8 or holds a NUL, a date outside the years 1 to 9999, nesting deeper than
/// 40, more than 16 MB) leaves the key as it was, with one line on standard error.
///
/// A child process that was forked must not use settings before it executes another program.
class UserDefaults : public NSObject {
  public:
    /// The application's own domain: that of the bundle's identifier, or of the program's name when
    /// the bundle states none. A read searches it first, then the suites of addSuiteNamed() in the
    /// order of their addition. A write changes the own domain only.
    static const std::shared_ptr<UserDefaults>& standard();
    /// A new store for a suite, which all processes of the user share. Null, with the reason on
    /// standard error, when the name is empty, a path or the application's own domain, or when the
    /// suite cannot be opened.
    static std::shared_ptr<UserDefaults> suiteName(std::string_view name);

    /// Adds a suite to the end of the process's search list, unless the list has it. A suite that
    /// is refused (see suiteName()) is not added, with the reason on standard error.
    void addSuiteNamed(std::string_view name);

    /// Stores a value of any kind. An absent value removes the key.
    void set(const std::optional<PropertyList>& value, std::string_view forKey);
    /// Stores a URL as its text. An absent URL removes the key.
    void set(const std::optional<URL>& value, std::string_view forKey);
    /// The same as set().
    void setValue(const std::optional<PropertyList>& value, std::string_view forKey);
    /// Removes the key from the domain that set() writes to.
    void removeObject(std::string_view forKey);

    std::optional<PropertyList> object(std::string_view forKey) const;
    /// Absent when the value is not a text.
    std::optional<std::string> string(std::string_view forKey) const;
    /// 0 without a value. A float loses its fraction and is clamped to the range (NaN: 0); a truth
    /// value is 1 or 0; a text counts as the number at its beginning; other kinds are 0.
    std::int64_t integer(std::string_view forKey) const;
    /// 0 without a value; converted as integer() does, to the nearest float.
    float float_(std::string_view forKey) const;
    /// False without a value. A number is true unless it is 0. A text is true when "Y", "y", "T",
    /// "t" or a digit from 1 to 9 follows its leading blanks, sign and zeros. Other kinds are
    /// false.
    bool bool_(std::string_view forKey) const;
    /// The URL in a text, or else the file with this path ("~" is the home folder). Absent when the
    /// value is not a text, or is an empty one.
    std::optional<URL> url(std::string_view forKey) const;

    /// All entries that object() finds.
    PropertyList::Dictionary dictionaryRepresentation() const;

  private:
    UserDefaults(std::shared_ptr<DefaultsDomain> domain, bool isStandard);

    /// Calls the operation with each domain that a read searches, until it returns true.
    template <typename Operation>
    void search(const Operation& operation) const;

    std::shared_ptr<DefaultsDomain> domain_;
    bool isStandard_;
};

}  // namespace orvalo
