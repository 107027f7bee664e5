#include <QSettings>
#include <QString>

#include "bench/defaults/Store.h"

namespace orvalo::bench {

namespace {

/// QSettings looks at its file, and writes to it, when it is told to or when an event loop is idle.
class QSettingsStore : public Store {
  public:
    explicit QSettingsStore(const std::filesystem::path& file)
        : settings_(QString::fromStdString(file.string()), QSettings::IniFormat) {}

    std::int64_t read(const std::string& key) override {
        return settings_.value(QString::fromStdString(key)).toLongLong();
    }
    std::int64_t readFresh(const std::string& key) override {
        settings_.sync();
        return read(key);
    }
    void write(const std::string& key, std::int64_t number) override {
        settings_.setValue(QString::fromStdString(key), static_cast<qlonglong>(number));
        settings_.sync();
    }

  private:
    QSettings settings_;
};

}  // namespace

std::unique_ptr<Store> openQSettingsStore(const std::filesystem::path& folder) {
    return std::make_unique<QSettingsStore>(folder / "settings.ini");
}

}  // namespace orvalo::bench
