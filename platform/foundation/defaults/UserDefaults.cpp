#include "platform/foundation/defaults/UserDefaults.h"

#include <glib.h>

#include <utility>

#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/DefaultsDomain.h"
#include "platform/foundation/defaults/DefaultsPlaces.h"
#include "platform/foundation/defaults/PropertyListConversion.h"
#include "platform/foundation/defaults/SearchList.h"

namespace orvalo {

namespace {

/// The domain of a suite, opened; null, with the reason on standard error, when it is refused.
std::shared_ptr<DefaultsDomain> suite(std::string_view name) {
    if (const auto trouble = suiteNameTrouble(name)) {
        g_warning("%s", trouble->c_str());
        return nullptr;
    }
    try {
        auto domain = DefaultsDomain::of(suiteFile(name).string());
        domain->open();
        return domain;
    } catch (const NSError& error) {
        g_warning("The suite '%s' cannot be opened: %s.", std::string(name).c_str(), error.what());
        return nullptr;
    }
}

}  // namespace

UserDefaults::UserDefaults(std::shared_ptr<DefaultsDomain> domain, bool isStandard)
    : domain_(std::move(domain)), isStandard_(isStandard) {}

const std::shared_ptr<UserDefaults>& UserDefaults::standard() {
    // Never destroyed: threads may still ask for it while the process ends.
    static const auto& standard = *new const std::shared_ptr<UserDefaults>(
        new UserDefaults(SearchList::shared().own(), true));
    return standard;
}

std::shared_ptr<UserDefaults> UserDefaults::suiteName(std::string_view name) {
    auto domain = suite(name);
    return domain ? std::shared_ptr<UserDefaults>(new UserDefaults(std::move(domain), false))
                  : nullptr;
}

// The list is the process's, whoever is asked to add to it.
// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
void UserDefaults::addSuiteNamed(std::string_view name) {
    auto& list = SearchList::shared();
    if (list.holds(name)) {
        return;
    }
    if (auto domain = suite(name)) {
        list.add(name, std::move(domain));
    }
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

template <typename Result>
Result UserDefaults::converted(std::string_view key,
                               Result (*conversion)(const PropertyList&)) const {
    Result result{};
    const auto look = [&](DefaultsDomain& domain) {
        return domain.visit(key, [&](const PropertyList& value) { result = conversion(value); });
    };
    if (isStandard_) {
        SearchList::shared().look(look);
    } else {
        look(*domain_);
    }
    return result;
}

std::optional<PropertyList> UserDefaults::object(std::string_view forKey) const {
    return converted<std::optional<PropertyList>>(
        forKey, [](const PropertyList& value) { return std::optional(value); });
}

std::optional<PropertyList> UserDefaults::value(std::string_view forKey) const {
    return object(forKey);
}

std::optional<std::string> UserDefaults::string(std::string_view forKey) const {
    return converted(forKey, textOf);
}

std::int64_t UserDefaults::integer(std::string_view forKey) const {
    return converted(forKey, integerOf);
}

float UserDefaults::float_(std::string_view forKey) const {
    return converted(forKey, floatOf);
}

double UserDefaults::double_(std::string_view forKey) const {
    return converted(forKey, doubleOf);
}

bool UserDefaults::bool_(std::string_view forKey) const {
    return converted(forKey, truthOf);
}

std::optional<URL> UserDefaults::url(std::string_view forKey) const {
    return converted(forKey, addressOf);
}

PropertyList::Dictionary UserDefaults::dictionaryRepresentation() const {
    PropertyList::Dictionary dictionary;
    const auto add = [&](DefaultsDomain& domain) {
        domain.addTo(dictionary);
        return false;
    };
    if (isStandard_) {
        SearchList::shared().look(add);
    } else {
        add(*domain_);
    }
    return dictionary;
}

}  // namespace orvalo
