#include "persistence/PersistentAppData.h"

#include <cmath>

#include "platform/foundation/Print.h"
#include "support/FileLocations.h"
#include "support/Unwrapped.h"

namespace orvalo {

namespace {

void dump(const std::string& name, const UserDefaults& view) {
    print("PersistentAppData::dumpout() : UserDefaults." + name + " : ");
    for (const auto& [key, value] : view.dictionaryRepresentation()) {
        print(key + " = " + description(value) + " \n");
    }
}

/// The number as a 32-bit float; absent when that would change it.
std::optional<float> exactFloat(double number) {
    const auto result = static_cast<float>(number);
    return std::isnan(number) || result == number ? std::optional(result) : std::nullopt;
}

std::optional<float> exactFloat(std::int64_t number) {
    const auto result = static_cast<float>(number);
    // The largest integers round to 2^63, which is out of their range.
    const bool isInRange = result < 0x1p63F;
    return isInRange && static_cast<std::int64_t>(result) == number ? std::optional(result)
                                                                    : std::nullopt;
}

std::optional<float> exactFloat(const PropertyList& value) {
    if (const auto* number = value.as<double>()) {
        return exactFloat(*number);
    }
    const auto* number = value.as<std::int64_t>();
    return number == nullptr ? std::nullopt : exactFloat(*number);
}

}  // namespace

std::shared_ptr<UserDefaults> UserDefaultsViews::shared() {
    auto store = UserDefaults::suiteName(sharedContainer);
    unwrapped(store);
    return store;
}

std::shared_ptr<UserDefaults> UserDefaultsViews::combined() {
    const auto& store = UserDefaults::standard();
    store->addSuiteNamed(sharedContainer);
    return store;
}

std::optional<PersistentAppData::Storage> PersistentAppData::storage(std::int64_t rawValue) {
    if (rawValue < 0 || rawValue > 2) {
        return std::nullopt;
    }
    return static_cast<Storage>(rawValue);
}

const std::shared_ptr<PersistentAppData>& PersistentAppData::sharedInstance() {
    // Never destroyed: threads may still use it while the process ends.
    static const auto& instance =
        *new const std::shared_ptr<PersistentAppData>(new PersistentAppData);
    return instance;
}

PersistentAppData::PersistentAppData()
    : defaults(UserDefaults::standard()),
      shared(UserDefaultsViews::shared()),
      combined(UserDefaultsViews::combined()) {}

UserDefaults& PersistentAppData::view(Storage storage) const {
    switch (storage) {
        case Storage::defaults:
            return *defaults;
        case Storage::shared:
            return *shared;
        default:
            return *combined;
    }
}

void PersistentAppData::setString(const std::string& key, const std::string& value, Storage _for) {
    view(_for).setValue(value, key);
}

std::optional<std::string> PersistentAppData::getString(const std::string& key,
                                                        Storage from) const {
    return view(from).string(key);
}

void PersistentAppData::setInteger(const std::string& key, std::int64_t value, Storage _for) {
    view(_for).set(value, key);
}

std::int64_t PersistentAppData::getInteger(const std::string& key, Storage from) const {
    return view(from).integer(key);
}

void PersistentAppData::setFloat(const std::string& key, float value, Storage _for) {
    view(_for).set(value, key);
}

float PersistentAppData::getFloat(const std::string& key, Storage from) const {
    return view(from).float_(key);
}

void PersistentAppData::setBool(const std::string& key, bool value, Storage _for) {
    view(_for).set(value, key);
}

bool PersistentAppData::getBool(const std::string& key, Storage from) const {
    return view(from).bool_(key);
}

void PersistentAppData::setURL(const std::string& key, const std::optional<URL>& value,
                               Storage _for) {
    view(_for).set(value, key);
}

std::optional<URL> PersistentAppData::getUrl(const std::string& key, Storage from) const {
    return view(from).url(key);
}

void PersistentAppData::setObject(const std::string& key, const std::optional<PropertyList>& value,
                                  Storage _for) {
    view(_for).set(value, key);
}

std::optional<PropertyList> PersistentAppData::getObject(const std::string& key,
                                                         Storage from) const {
    return view(from).object(key);
}

void PersistentAppData::dumpout() const {
    dump("standard", *UserDefaults::standard());
    dump("shared", *UserDefaultsViews::shared());
    dump("combined", *UserDefaultsViews::combined());
}

PropertyList::Dictionary PersistentAppData::frameToDictionary(const CGRect& frame) {
    return {{"left", static_cast<float>(frame.minX())},
            {"top", static_cast<float>(frame.minY())},
            {"width", static_cast<float>(frame.width())},
            {"height", static_cast<float>(frame.height())}};
}

std::optional<CGRect> PersistentAppData::dictionaryToFrame(const std::string& key) {
    const auto value = sharedInstance()->getObject(key);
    const auto* dictionary = value ? value->as<PropertyList::Dictionary>() : nullptr;
    if (dictionary == nullptr) {
        return std::nullopt;
    }
    CGRect frame(0, 0, 100, 100);
    for (const auto& [name, entry] : *dictionary) {
        const auto number = exactFloat(entry);
        if (!number) {
            return std::nullopt;
        }
        if (name == "left") {
            frame.origin.x = *number;
        } else if (name == "top") {
            frame.origin.y = *number;
        } else if (name == "width") {
            frame.size.width = *number;
        } else if (name == "height") {
            frame.size.height = *number;
        }
    }
    return frame;
}

}  // namespace orvalo
