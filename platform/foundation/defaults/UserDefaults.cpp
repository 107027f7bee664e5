#include "platform/foundation/defaults/UserDefaults.h"

#include <glib.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/DefaultsDomain.h"
#include "platform/foundation/defaults/DefaultsPlaces.h"

namespace orvalo {

namespace {

/// The suites that the standard store searches behind its own domain.
class SearchList {
  public:
    using Suite = std::pair<std::string, std::shared_ptr<DefaultsDomain>>;

    static SearchList& shared() {
        // Never destroyed: threads may still use it while the process ends.
        static auto& list = *new SearchList;
        return list;
    }

    std::vector<Suite> suites() const {
        const std::lock_guard lock(mutex_);
        return suites_;
    }
    /// Adds the suite that the function opens, unless the list has it or it is refused.
    void add(std::string_view name,
             const std::function<std::shared_ptr<DefaultsDomain>(std::string_view)>& open) {
        const std::lock_guard lock(mutex_);
        if (std::ranges::find(suites_, name, &Suite::first) != suites_.end()) {
            return;
        }
        if (auto domain = open(name)) {
            suites_.emplace_back(name, std::move(domain));
        }
    }

  private:
    mutable std::mutex mutex_;
    std::vector<Suite> suites_;
};

/// The opened domain of a suite; null, with the reason on standard error, when it is refused.
std::shared_ptr<DefaultsDomain> suite(std::string_view name) {
    if (const auto trouble = suiteNameTrouble(name)) {
        g_warning("%s", trouble->c_str());
        return nullptr;
    }
    const auto file = suiteFile(name).string();
    try {
        auto domain = std::make_shared<DefaultsDomain>(file);
        domain->open();
        return domain;
    } catch (const SQLiteError& error) {
        // SQLite's text does not name the file.
        g_warning("The suite '%s' cannot be opened: %s: %s.", std::string(name).c_str(),
                  file.c_str(), error.what());
    } catch (const NSError& error) {
        g_warning("The suite '%s' cannot be opened: %s.", std::string(name).c_str(), error.what());
    }
    return nullptr;
}

// UserDefaults.h states the rules of these conversions.

/// The text without its leading blanks.
std::string_view trimmed(std::string_view text) {
    const auto begin = text.find_first_not_of(" \t\n\r\v\f");
    return begin == std::string_view::npos ? std::string_view() : text.substr(begin);
}

/// The decimal number at the beginning of a text; 0 without one.
double leadingNumber(std::string_view text) {
    text = trimmed(text);
    // g_ascii_strtod() would also take "0x10", "nan" and "infinity".
    return g_ascii_strtod(
        std::string(text.substr(0, text.find_first_not_of("0123456789+-.eE"))).c_str(), nullptr);
}

std::int64_t truncated(double number) {
    constexpr double bound = 0x1p63;
    if (std::isnan(number)) {
        return 0;
    }
    if (number >= bound) {
        return std::numeric_limits<std::int64_t>::max();
    }
    return number < -bound ? std::numeric_limits<std::int64_t>::min()
                           : static_cast<std::int64_t>(number);
}

std::string expanded(const std::string& path) {
    const bool isInHome = path == "~" || path.starts_with("~/");
    return isInHome ? g_get_home_dir() + path.substr(1) : path;
}

std::int64_t integerOf(const PropertyList& value) {
    if (const auto* integer = value.as<std::int64_t>()) {
        return *integer;
    }
    if (const auto* number = value.as<double>()) {
        return truncated(*number);
    }
    if (const auto* truth = value.as<bool>()) {
        return *truth ? 1 : 0;
    }
    const auto* text = value.as<std::string>();
    return text != nullptr ? g_ascii_strtoll(text->c_str(), nullptr, 10) : 0;
}

float floatOf(const PropertyList& value) {
    // A number out of a float's range becomes infinite.
    if (const auto* number = value.as<double>()) {
        return static_cast<float>(*number);
    }
    if (const auto* text = value.as<std::string>()) {
        return static_cast<float>(leadingNumber(*text));
    }
    return static_cast<float>(integerOf(value));
}

bool truthOf(const PropertyList& value) {
    if (const auto* truth = value.as<bool>()) {
        return *truth;
    }
    if (const auto* number = value.as<double>()) {
        return *number != 0;
    }
    const auto* text = value.as<std::string>();
    if (text == nullptr) {
        return integerOf(value) != 0;
    }
    auto rest = trimmed(*text);
    if (rest.starts_with('+') || rest.starts_with('-')) {
        rest.remove_prefix(1);
    }
    const auto first = rest.find_first_not_of('0');
    return first != std::string_view::npos &&
           std::string_view("YyTt123456789").find(rest[first]) != std::string_view::npos;
}

std::optional<URL> addressOf(const PropertyList& value) {
    const auto* text = value.as<std::string>();
    if (text == nullptr || text->empty()) {
        return std::nullopt;
    }
    if (auto address = URL::string(*text)) {
        return address;
    }
    return URL::fileURLWithPath(expanded(*text));
}

}  // namespace

UserDefaults::UserDefaults(std::shared_ptr<DefaultsDomain> domain, bool isStandard)
    : domain_(std::move(domain)), isStandard_(isStandard) {}

const std::shared_ptr<UserDefaults>& UserDefaults::standard() {
    // Never destroyed: threads may still use it while the process ends.
    static const auto& standard = *new const std::shared_ptr<UserDefaults>(
        new UserDefaults(std::make_shared<DefaultsDomain>(ownDomainFile().string()), true));
    return standard;
}

std::shared_ptr<UserDefaults> UserDefaults::suiteName(std::string_view name) {
    auto domain = suite(name);
    return domain ? std::shared_ptr<UserDefaults>(new UserDefaults(std::move(domain), false))
                  : nullptr;
}

// Not static, although the list belongs to the process: the name is given.
// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
void UserDefaults::addSuiteNamed(std::string_view name) {
    SearchList::shared().add(name, suite);
}

void UserDefaults::set(const std::optional<PropertyList>& value, std::string_view forKey) {
    domain_->set(forKey, value);
}

void UserDefaults::set(const std::optional<URL>& value, std::string_view forKey) {
    domain_->set(forKey,
                 value ? std::optional<PropertyList>(value->absoluteString()) : std::nullopt);
}

void UserDefaults::setValue(const std::optional<PropertyList>& value, std::string_view forKey) {
    domain_->set(forKey, value);
}

void UserDefaults::removeObject(std::string_view forKey) {
    domain_->set(forKey, std::nullopt);
}

template <typename Operation>
void UserDefaults::search(const Operation& operation) const {
    if (operation(*domain_) || !isStandard_) {
        return;
    }
    for (const auto& [name, domain] : SearchList::shared().suites()) {
        if (operation(*domain)) {
            return;
        }
    }
}

std::optional<PropertyList> UserDefaults::object(std::string_view forKey) const {
    std::optional<PropertyList> value;
    search([&](DefaultsDomain& domain) {
        value = domain.value(forKey);
        return value.has_value();
    });
    return value;
}

std::optional<std::string> UserDefaults::string(std::string_view forKey) const {
    const auto value = object(forKey);
    const auto* text = value ? value->as<std::string>() : nullptr;
    return text != nullptr ? std::optional(*text) : std::nullopt;
}

std::int64_t UserDefaults::integer(std::string_view forKey) const {
    const auto value = object(forKey);
    return value ? integerOf(*value) : 0;
}

float UserDefaults::float_(std::string_view forKey) const {
    const auto value = object(forKey);
    return value ? floatOf(*value) : 0;
}

bool UserDefaults::bool_(std::string_view forKey) const {
    const auto value = object(forKey);
    return value ? truthOf(*value) : false;
}

std::optional<URL> UserDefaults::url(std::string_view forKey) const {
    const auto value = object(forKey);
    return value ? addressOf(*value) : std::nullopt;
}

PropertyList::Dictionary UserDefaults::dictionaryRepresentation() const {
    PropertyList::Dictionary dictionary;
    search([&](DefaultsDomain& domain) {
        domain.addTo(dictionary);
        return false;
    });
    return dictionary;
}

}  // namespace orvalo
