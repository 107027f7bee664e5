#include "tests/platform/foundation/defaults/Hammer.h"

#include <chrono>
#include <stdexcept>

namespace orvalo::testing {

namespace {

constexpr int kKeysOfEach = 5;
constexpr const char* kCommonKey = "common";

std::string keyOf(int owner, int number) {
    return "key " + std::to_string(owner) + " " + std::to_string(number);
}

}  // namespace

Hammer::Hammer(UserDefaults& settings, int self, int all)
    : settings_(settings), self_(self), all_(all), random_(std::random_device()()) {}

PropertyList Hammer::valueOf(std::int64_t number) {
    // Long values lie on separate pages.
    const auto length = static_cast<std::size_t>(number % 7 == 0 ? 6000 : number % 50);
    return PropertyList::List{number, std::string(length, 'x'), Data(length, 0xA5), number};
}

std::optional<std::int64_t> Hammer::numberOf(const std::optional<PropertyList>& value) {
    if (!value) {
        return std::nullopt;
    }
    const auto* list = value->as<PropertyList::List>();
    const auto* number = list == nullptr || list->empty() ? nullptr : (*list)[0].as<std::int64_t>();
    if (number == nullptr || *value != valueOf(*number)) {
        throw std::logic_error("a torn value: " + description(*value));
    }
    return *number;
}

std::string Hammer::randomKey(int owner) {
    return keyOf(owner, static_cast<int>(random_() % kKeysOfEach));
}

void Hammer::look(const std::string& key, const std::optional<PropertyList>& value) {
    const auto number = numberOf(value).value_or(0);
    auto& known = seen_[key];
    if (number < known) {
        throw std::logic_error(key + " went from " + std::to_string(known) + " back to " +
                               std::to_string(number));
    }
    known = number;
}

void Hammer::writeOwn() {
    const auto key = randomKey(self_);
    const auto next = ++seen_[key];
    settings_.set(valueOf(next), key);
    if (numberOf(settings_.object(key)) != next) {
        throw std::logic_error(key + " is not what was just written");
    }
}

void Hammer::writeCommon() {
    if (random_() % 4 == 0) {
        settings_.removeObject(kCommonKey);
    } else {
        settings_.set(valueOf(static_cast<std::int64_t>(random_() % 1000)), kCommonKey);
    }
}

void Hammer::read() {
    if (random_() % 16 == 0) {
        for (const auto& [key, value] : settings_.dictionaryRepresentation()) {
            if (key == kCommonKey) {
                numberOf(value);
            } else {
                look(key, value);
            }
        }
        return;
    }
    const auto key = randomKey(static_cast<int>(random_() % static_cast<unsigned>(all_)));
    look(key, settings_.object(key));
    numberOf(settings_.object(kCommonKey));
}

std::string Hammer::run(double seconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (std::chrono::steady_clock::now() < end) {
        switch (random_() % 4) {
            case 0:
                writeOwn();
                break;
            case 1:
                writeCommon();
                break;
            default:
                read();
                break;
        }
    }
    std::string result;
    for (int number = 0; number < kKeysOfEach; ++number) {
        const auto key = keyOf(self_, number);
        result += key + "=" + std::to_string(seen_[key]) + ";";
    }
    return result;
}

}  // namespace orvalo::testing
