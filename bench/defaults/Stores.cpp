#include "bench/defaults/Store.h"

namespace orvalo::bench {

const std::vector<Contender>& contenders() {
    static const std::vector<Contender> all = {
        {"orvalo", openOwnStore},
#ifdef ORVALO_BENCH_QSETTINGS
        {"QSettings", openQSettingsStore},
#endif
        {"GSettings", openGSettingsStore},
    };
    return all;
}

}  // namespace orvalo::bench
