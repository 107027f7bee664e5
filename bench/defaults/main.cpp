// How fast one process reads and writes ten integers: UserDefaults against QSettings with sync(),
// which exchanges the values with other processes.

#ifdef ORVALO_BENCH_QSETTINGS
#include <QSettings>
#include <QString>
#endif

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/measuring/Clocks.h"
#include "bench/measuring/Options.h"
#include "bench/measuring/ScratchFolder.h"
#include "bench/measuring/Statistics.h"
#include "platform/foundation/defaults/UserDefaults.h"

namespace orvalo::bench {
namespace {

constexpr int kKeys = 10;

struct Store {
    const char* name;
    std::function<std::int64_t(int key)> read;
    std::function<void(int key, std::int64_t number)> write;
};

std::string keyOf(int number) {
    return "key" + std::to_string(number);
}

Store ownStore() {
    const auto settings = UserDefaults::suiteName("bench");
    if (!settings) {
        throw std::runtime_error("the suite cannot be opened");
    }
    return {"orvalo", [=](int key) { return settings->integer(keyOf(key)); },
            [=](int key, std::int64_t number) { settings->set(number, keyOf(key)); }};
}

#ifdef ORVALO_BENCH_QSETTINGS
Store qSettingsStore(const std::filesystem::path& folder) {
    const auto settings = std::make_shared<QSettings>(
        QString::fromStdString(folder / "settings.ini"), QSettings::IniFormat);
    return {"QSettings",
            [=](int key) {
                settings->sync();
                return settings->value(QString::fromStdString(keyOf(key))).toLongLong();
            },
            [=](int key, std::int64_t number) {
                settings->setValue(QString::fromStdString(keyOf(key)),
                                   static_cast<qlonglong>(number));
                settings->sync();
            }};
}
#endif

/// Operations in a second.
double rate(const std::function<void(int)>& operation, double seconds) {
    const auto begin = monotonicNanoseconds();
    int count = 0;
    double passed = 0;
    while (passed < seconds) {
        for (int turn = 0; turn < kKeys; ++turn) {
            operation(count++);
        }
        passed = inSeconds(monotonicNanoseconds() - begin);
    }
    return count / passed;
}

int run(const Options& options) {
    const ScratchFolder folder;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): there is one thread.
    setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1);
    std::vector<Store> stores{ownStore()};
#ifdef ORVALO_BENCH_QSETTINGS
    stores.push_back(qSettingsStore(folder.path()));
#endif
    const double seconds = options.count("--milliseconds") * 1e-3;
    for (const auto& store : stores) {
        std::vector<double> reads;
        std::vector<double> writes;
        for (int round = 0; round < options.count("--rounds"); ++round) {
            writes.push_back(rate([&](int count) { store.write(count % kKeys, count); }, seconds));
            reads.push_back(rate([&](int count) { store.read(count % kKeys); }, seconds));
        }
        std::printf("%-10s  %8.1f thousand reads/s  %8.1f thousand writes/s\n", store.name,
                    median(reads) * 1e-3, median(writes) * 1e-3);
    }
    return EXIT_SUCCESS;
}

}  // namespace
}  // namespace orvalo::bench

int main(int argc, char** argv) {
    using namespace orvalo::bench;
    try {
        return run(Options(argc, argv, {{"--rounds", "5"}, {"--milliseconds", "300"}}));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
