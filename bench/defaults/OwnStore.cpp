#include <cstdlib>
#include <stdexcept>

#include "bench/defaults/Store.h"
#include "platform/foundation/defaults/UserDefaults.h"

namespace orvalo::bench {

namespace {

class OwnStore : public Store {
  public:
    explicit OwnStore(std::shared_ptr<UserDefaults> settings) : settings_(std::move(settings)) {}

    std::int64_t read(const std::string& key) override { return settings_->integer(key); }
    void write(const std::string& key, std::int64_t number) override {
        settings_->set(number, key);
    }

  private:
    std::shared_ptr<UserDefaults> settings_;
};

}  // namespace

std::unique_ptr<Store> openOwnStore(const std::filesystem::path& folder) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): before any other thread.
    setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
    auto settings = UserDefaults::suiteName("bench");
    if (!settings) {
        throw std::runtime_error("the suite cannot be opened");
    }
    return std::make_unique<OwnStore>(std::move(settings));
}

}  // namespace orvalo::bench
