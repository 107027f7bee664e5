#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include "bench/animation/TimerWays.h"

namespace orvalo::bench {

namespace {

void runQtTimer(int milliseconds, const std::function<bool()>& tick) {
    QEventLoop loop;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (!tick()) {
            timer.stop();
            loop.quit();
        }
    });
    timer.start(milliseconds);
    loop.exec();
}

}  // namespace

TimerWay qtTimerWay() {
    static int count = 1;
    static char name[] =
        "orvalo-bench-timers";  // NOLINT(modernize-avoid-c-arrays): as main has it.
    static char* arguments[] = {name, nullptr};  // NOLINT(modernize-avoid-c-arrays): as above.
    static const QCoreApplication application(count, arguments);
    return runQtTimer;
}

}  // namespace orvalo::bench
