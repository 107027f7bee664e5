#include "persistence/PersistentAppData.h"

#include "persistence/UserDefaultsViews.h"
#include "platform/foundation/Print.h"

namespace orvalo {

namespace {

void dump(const std::string& name, const UserDefaults& view) {
    print("PersistentAppData::dumpout() : UserDefaults." + name + " : ");
    for (const auto& [key, value] : view.dictionaryRepresentation()) {
        print(key + " = " + description(value) + " \n");
    }
}

}  // namespace

std::optional<PersistentAppData::Storage> PersistentAppData::storage(std::int64_t rawValue) {
    if (rawValue < 0 || rawValue > 2) {
        return std::nullopt;
    }
    return static_cast<Storage>(rawValue);
}

const std::shared_ptr<PersistentAppData>& PersistentAppData::sharedInstance() {
    // Never destroyed: threads may still ask for it while the process ends.
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

}  // namespace orvalo
