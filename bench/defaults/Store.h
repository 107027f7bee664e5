#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace orvalo::bench {

/// A store of settings as a program uses it: whole numbers under the keys that keyOf() names.
class Store {
  public:
    virtual ~Store() = default;

    virtual std::int64_t read(const std::string& key) = 0;
    /// Reads what another process has written by now, where read() does not do so by itself.
    virtual std::int64_t readFresh(const std::string& key) { return read(key); }
    /// Returns when the write is where other processes can find it.
    virtual void write(const std::string& key, std::int64_t number) = 0;
};

inline constexpr int kKeys = 10;

/// The name of a key, from 0 to below kKeys.
inline std::string keyOf(int number) {
    return "key" + std::to_string(number);
}

struct Contender {
    std::string name;
    /// Opens the store in a folder, which two processes may do at once.
    std::function<std::unique_ptr<Store>(const std::filesystem::path& folder)> open;
};

/// Ours first, then those whose libraries were there when this was built.
const std::vector<Contender>& contenders();

std::unique_ptr<Store> openOwnStore(const std::filesystem::path& folder);
std::unique_ptr<Store> openGSettingsStore(const std::filesystem::path& folder);
std::unique_ptr<Store> openQSettingsStore(const std::filesystem::path& folder);

/// What GSettings needs in the folder before it is opened.
void makeGSettingsSchema(const std::filesystem::path& folder);

}  // namespace orvalo::bench
