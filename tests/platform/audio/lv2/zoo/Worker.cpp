// A plug-in that floods its worker: each run() schedules more and larger requests than the host's
// ring holds, and each request sends more responses than the ring holds.

#include <lv2/core/lv2.h>
#include <lv2/worker/worker.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace {

constexpr std::uint32_t kLarge = 100000;

struct Worker {
    LV2_Worker_Schedule* schedule = nullptr;
    std::vector<std::uint8_t> message = std::vector<std::uint8_t>(kLarge, 0x5A);
    std::array<void*, 2> ports{};
    int accepted = 0;
    int wrongAnswers = 0;
};

Worker& worker(LV2_Handle handle) {
    return *static_cast<Worker*>(handle);
}

LV2_Handle instantiate(const LV2_Descriptor* /*descriptor*/, double /*rate*/,
                       const char* /*bundle*/, const LV2_Feature* const* features) {
    auto* self = new Worker;
    for (; *features != nullptr; ++features) {
        if (std::string_view((*features)->URI) == LV2_WORKER__schedule) {
            self->schedule = static_cast<LV2_Worker_Schedule*>((*features)->data);
        }
    }
    return self;
}

void connectPort(LV2_Handle handle, std::uint32_t port, void* location) {
    worker(handle).ports[port] = location;
}

/// The first output sample counts the accepted requests of this run(), the last one the damaged
/// responses so far.
void run(LV2_Handle handle, std::uint32_t frames) {
    auto& self = worker(handle);
    self.accepted = 0;
    const auto ask = [&self](std::uint32_t size) {
        if (self.schedule->schedule_work(self.schedule->handle, size, self.message.data()) ==
            LV2_WORKER_SUCCESS) {
            ++self.accepted;
        }
    };
    ask(UINT32_MAX);
    ask(1U << 30U);
    for (int round = 0; round < 4; ++round) {
        ask(kLarge);
        ask(0);
    }
    auto* out = static_cast<float*>(self.ports[1]);
    std::memset(out, 0, frames * sizeof(float));
    out[0] = static_cast<float>(self.accepted);
    out[frames - 1] = static_cast<float>(self.wrongAnswers);
}

void cleanup(LV2_Handle handle) {
    delete &worker(handle);
}

LV2_Worker_Status work(LV2_Handle /*handle*/, LV2_Worker_Respond_Function respond,
                       LV2_Worker_Respond_Handle respondHandle, std::uint32_t size,
                       const void* data) {
    respond(respondHandle, UINT32_MAX, data);
    for (int round = 0; round < 3; ++round) {
        respond(respondHandle, size, data);
    }
    return LV2_WORKER_ERR_UNKNOWN;
}

LV2_Worker_Status workResponse(LV2_Handle handle, std::uint32_t size, const void* body) {
    auto& self = worker(handle);
    const bool isWhole =
        size == 0 || (size == kLarge && std::memcmp(body, self.message.data(), size) == 0);
    self.wrongAnswers += isWhole ? 0 : 1;
    return LV2_WORKER_ERR_UNKNOWN;
}

const void* extensionData(const char* uri) {
    static const LV2_Worker_Interface methods{work, workResponse, nullptr};
    return std::string_view(uri) == LV2_WORKER__interface ? &methods : nullptr;
}

}  // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    static const LV2_Descriptor descriptor{"urn:orvalo:zoo:worker",
                                           instantiate,
                                           connectPort,
                                           nullptr,
                                           run,
                                           nullptr,
                                           cleanup,
                                           extensionData};
    return index == 0 ? &descriptor : nullptr;
}
