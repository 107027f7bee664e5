#include "platform/audio/lv2/LV2Worker.h"

#include <pthread.h>

#include <cerrno>

namespace orvalo {

namespace {
// Requests are paths and small records; the extension allows refusing a request that does not fit.
constexpr std::size_t kRingSize = 128U << 10U;
}  // namespace

LV2Worker::LV2Worker()
    : requests_(kRingSize), responses_(kRingSize), request_(kRingSize), response_(kRingSize) {
    sem_init(&requested_, 0, 0);
}

LV2Worker::~LV2Worker() {
    stop();
    sem_destroy(&requested_);
}

void LV2Worker::start(LV2_Handle instance, const LV2_Worker_Interface* worker) {
    if (worker == nullptr || worker->work == nullptr) {
        return;
    }
    instance_ = instance;
    worker_ = worker;
    thread_ = std::thread([this] {
        pthread_setname_np(pthread_self(), "lv2-worker");
        serve();
    });
}

void LV2Worker::stop() {
    if (thread_.joinable()) {
        isStopping_.store(true, std::memory_order_release);
        sem_post(&requested_);
        thread_.join();
    }
}

void LV2Worker::serve() {
    for (;;) {
        while (sem_wait(&requested_) != 0 && errno == EINTR) {
        }
        if (isStopping_.load(std::memory_order_acquire)) {
            return;
        }
        std::uint32_t size = 0;
        if (requests_.read(size, request_.data())) {
            const std::scoped_lock lock(work_);
            worker_->work(instance_, respond, this, size, request_.data());
        }
    }
}

void LV2Worker::finishCycle() noexcept {
    if (worker_ == nullptr) {
        return;
    }
    if (worker_->work_response != nullptr) {
        std::uint32_t size = 0;
        while (responses_.read(size, response_.data())) {
            worker_->work_response(instance_, size, response_.data());
        }
    }
    if (worker_->end_run != nullptr) {
        worker_->end_run(instance_);
    }
}

LV2_Worker_Status LV2Worker::scheduleWork(LV2_Worker_Schedule_Handle handle, std::uint32_t size,
                                          const void* data) {
    auto& worker = *static_cast<LV2Worker*>(handle);
    if (worker.worker_ == nullptr) {
        return LV2_WORKER_ERR_UNKNOWN;
    }
    if (!worker.requests_.write(size, data)) {
        return LV2_WORKER_ERR_NO_SPACE;
    }
    sem_post(&worker.requested_);
    return LV2_WORKER_SUCCESS;
}

LV2_Worker_Status LV2Worker::workNow(LV2_Worker_Schedule_Handle handle, std::uint32_t size,
                                     const void* data) {
    auto& worker = *static_cast<LV2Worker*>(handle);
    if (worker.worker_ == nullptr) {
        return LV2_WORKER_ERR_UNKNOWN;
    }
    const std::scoped_lock lock(worker.work_);
    return worker.worker_->work(worker.instance_, respond, &worker, size, data);
}

LV2_Worker_Status LV2Worker::respond(LV2_Worker_Respond_Handle handle, std::uint32_t size,
                                     const void* data) {
    // Only called inside work(), so work_ makes the calling thread the only writer.
    auto& worker = *static_cast<LV2Worker*>(handle);
    return worker.responses_.write(size, data) ? LV2_WORKER_SUCCESS : LV2_WORKER_ERR_NO_SPACE;
}

}  // namespace orvalo
