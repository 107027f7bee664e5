// Submission to the main queue compared with g_idle_add().

#include <benchmark/benchmark.h>
#include <glib.h>

#include <cstdint>
#include <iostream>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "platform/foundation/DispatchQueue.h"

namespace {

using orvalo::DispatchQueue;

constexpr std::int64_t burst = 10'000;  // Below the size of the main queue's pool.
std::int64_t runs = 0;

struct MainQueueWay {
    static void submit() {
        DispatchQueue::main()->async([] { ++runs; });
    }
};

struct IdleWay {
    static void submit() {
        g_idle_add(
            [](gpointer) -> gboolean {
                ++runs;
                return G_SOURCE_REMOVE;
            },
            nullptr);
    }
};

void serveBurst(std::int64_t items) {
    while (runs < items) {
        g_main_context_iteration(nullptr, TRUE);
    }
    runs = 0;
}

/// Submits one item while the loop does not run.
template <typename Way>
void submission(benchmark::State& state) {
    while (state.KeepRunningBatch(burst)) {
        for (std::int64_t item = 0; item < burst; ++item) {
            Way::submit();
        }
        state.PauseTiming();
        serveBurst(burst);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations());
}

/// Submits items from another thread while the loop runs them. The main queue runs one item per
/// turn, each with a poll, so that other sources do not wait; all pending idle callbacks share one
/// turn.
template <typename Way>
void throughput(benchmark::State& state) {
    while (state.KeepRunningBatch(burst)) {
        std::thread submitter([] {
            for (std::int64_t item = 0; item < burst; ++item) {
                Way::submit();
            }
        });
        serveBurst(burst);
        submitter.join();
    }
    state.SetItemsProcessed(state.iterations());
}

/// Keeps the median of each benchmark and prints the ratios behind the table.
class RatioReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& reports) override {
        ConsoleReporter::ReportRuns(reports);
        for (const auto& run : reports) {
            if (run.aggregate_name == "median") {
                nanoseconds_[run.run_name.function_name] = run.GetAdjustedRealTime();
            }
        }
    }

    void Finalize() override {
        ConsoleReporter::Finalize();
        print("submission");
        print("throughput");
    }

  private:
    void print(const std::string& name) const {
        const auto idle = nanoseconds_.find(name + "/g_idle_add");
        const auto queue = nanoseconds_.find(name + "/main_queue");
        if (idle != nanoseconds_.end() && queue != nanoseconds_.end()) {
            std::cout << name << ": the main queue takes " << queue->second
                      << " ns an item, g_idle_add " << idle->second
                      << " ns: " << idle->second / queue->second << " times as fast\n";
        }
    }

    std::map<std::string, double> nanoseconds_;
};

void repeat(benchmark::internal::Benchmark* benchmark) {
    benchmark->UseRealTime()->MinTime(0.1)->Repetitions(5)->ReportAggregatesOnly();
}

BENCHMARK_TEMPLATE(submission, MainQueueWay)->Name("submission/main_queue")->Apply(repeat);
BENCHMARK_TEMPLATE(submission, IdleWay)->Name("submission/g_idle_add")->Apply(repeat);
BENCHMARK_TEMPLATE(throughput, MainQueueWay)->Name("throughput/main_queue")->Apply(repeat);
BENCHMARK_TEMPLATE(throughput, IdleWay)->Name("throughput/g_idle_add")->Apply(repeat);

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
