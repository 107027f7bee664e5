// A valid plug-in that records its host's calls.

#include <lv2/atom/atom.h>
#include <lv2/atom/forge.h>
#include <lv2/atom/util.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/core/lv2.h>
#include <lv2/log/log.h>
#include <lv2/midi/midi.h>
#include <lv2/options/options.h>
#include <lv2/parameters/parameters.h>
#include <lv2/state/state.h>
#include <lv2/time/time.h>
#include <lv2/urid/urid.h>
#include <lv2/worker/worker.h>

#include <array>
#include <cstring>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

#include "tests/platform/audio/lv2/zoo/ProbeRecord.h"

namespace {

using orvalo::zoo::ProbeRecord;

ProbeRecord& record() {
    static ProbeRecord instance;
    return instance;
}

constexpr const char* kSecret = "urn:orvalo:zoo:probe#secret";
constexpr const char* kFile = "urn:orvalo:zoo:probe#file";
constexpr const char* kContextName = "urn:tessaly:audio-component#contextName";

enum Port { kIn, kOut, kGain, kCorner, kWork, kChatter, kEvents, kNotes, kMoreNotes, kLatency };

void copyText(std::array<char, 256>& to, const void* text) {
    std::strncpy(to.data(), static_cast<const char*>(text), to.size() - 1);
}

struct Probe {
    LV2_URID_Map* map = nullptr;
    LV2_Worker_Schedule* schedule = nullptr;
    LV2_Log_Log* log = nullptr;
    LV2_State_Make_Path* makePath = nullptr;
    LV2_Atom_Forge forge{};
    LV2_URID midiEvent = 0;
    LV2_URID position = 0;
    LV2_URID frame = 0;
    LV2_URID speed = 0;
    LV2_URID secretKey = 0;
    LV2_URID fileKey = 0;
    LV2_URID contextName = 0;
    LV2_URID note = 0;
    LV2_URID stateChanged = 0;
    std::array<void*, 10> ports{};
    int nextJob = 0;
    int nextAnswer = 0;
    std::atomic<int> secret{0};
    std::atomic<std::thread::id> renderThread;
    std::atomic<bool> isRunning{false};
    std::atomic<bool> isControlled{false};
    std::atomic<bool> isWorking{false};
    bool isThreadSafe = false;
    std::string file;

    float control(Port port) const { return *static_cast<float*>(ports[port]); }
};

/// Marks a call that must not overlap run(), for the object's life. Prolongs the call, so that
/// tests see an overlap.
class ControlCall {
  public:
    explicit ControlCall(Probe& probe) : probe_(probe) {
        probe_.isControlled = true;
        look();
    }
    ~ControlCall() {
        for (int turn = 0; turn < 2000; ++turn) {
            look();
        }
        probe_.isControlled = false;
    }
    ControlCall(const ControlCall&) = delete;
    ControlCall& operator=(const ControlCall&) = delete;

  private:
    void look() const {
        if (probe_.isRunning) {
            ++record().controlCallsDuringRun;
        }
    }
    Probe& probe_;
};

Probe& probe(LV2_Handle handle) {
    return *static_cast<Probe*>(handle);
}

void readOption(Probe& self, const LV2_Options_Option& option) {
    auto& seen = record();
    const auto is = [&](const char* uri) {
        return option.key == self.map->map(self.map->handle, uri);
    };
    if (is(LV2_PARAMETERS__sampleRate)) {
        seen.rateOption = *static_cast<const float*>(option.value);
    } else if (is(LV2_BUF_SIZE__minBlockLength)) {
        seen.minBlockLength = *static_cast<const std::int32_t*>(option.value);
    } else if (is(LV2_BUF_SIZE__maxBlockLength)) {
        seen.maxBlockLength = *static_cast<const std::int32_t*>(option.value);
    } else if (is(LV2_BUF_SIZE__nominalBlockLength)) {
        seen.nominalBlockLength = *static_cast<const std::int32_t*>(option.value);
    } else if (is(LV2_BUF_SIZE__sequenceSize)) {
        seen.sequenceSize = *static_cast<const std::int32_t*>(option.value);
    } else if (is(kContextName)) {
        copyText(seen.firstContextName, option.value);
    }
}

LV2_Handle instantiate(const LV2_Descriptor* descriptor, double rate, const char* /*bundle*/,
                       const LV2_Feature* const* features) {
    auto* self = new Probe;
    auto& seen = record();
    const LV2_Options_Option* options = nullptr;
    for (; *features != nullptr; ++features) {
        const std::string_view uri((*features)->URI);
        void* data = (*features)->data;
        if (uri == LV2_URID__map) {
            self->map = static_cast<LV2_URID_Map*>(data);
        } else if (uri == LV2_WORKER__schedule) {
            self->schedule = static_cast<LV2_Worker_Schedule*>(data);
        } else if (uri == LV2_LOG__log) {
            self->log = static_cast<LV2_Log_Log*>(data);
        } else if (uri == LV2_STATE__makePath) {
            self->makePath = static_cast<LV2_State_Make_Path*>(data);
        } else if (uri == LV2_OPTIONS__options) {
            options = static_cast<const LV2_Options_Option*>(data);
        } else if (uri == LV2_BUF_SIZE__boundedBlockLength) {
            seen.hasBoundedBlockLength = true;
        }
    }
    const auto map = [self](const char* uri) { return self->map->map(self->map->handle, uri); };
    lv2_atom_forge_init(&self->forge, self->map);
    self->midiEvent = map(LV2_MIDI__MidiEvent);
    self->position = map(LV2_TIME__Position);
    self->frame = map(LV2_TIME__frame);
    self->speed = map(LV2_TIME__speed);
    self->secretKey = map(kSecret);
    self->fileKey = map(kFile);
    self->contextName = map(kContextName);
    self->note = map(LV2_LOG__Note);
    self->stateChanged = map(LV2_STATE__StateChanged);
    self->isThreadSafe = std::string_view(descriptor->URI).ends_with("safe");
    seen.rate = rate;
    for (; options != nullptr && options->key != 0; ++options) {
        readOption(*self, *options);
    }
    ++seen.instantiations;
    return self;
}

void connectPort(LV2_Handle handle, std::uint32_t port, void* location) {
    probe(handle).ports[port] = location;
}

void activate(LV2_Handle handle) {
    const ControlCall call(probe(handle));
    ++record().activations;
}

void readPosition(Probe& self) {
    const auto* events = static_cast<const LV2_Atom_Sequence*>(self.ports[kEvents]);
    LV2_ATOM_SEQUENCE_FOREACH(events, event) {
        const auto* object = reinterpret_cast<const LV2_Atom_Object*>(&event->body);
        if (object->body.otype != self.position) {
            continue;
        }
        const LV2_Atom* frame = nullptr;
        const LV2_Atom* speed = nullptr;
        lv2_atom_object_get(object, self.frame, &frame, self.speed, &speed, 0);
        ++record().positions;
        record().positionFrame = reinterpret_cast<const LV2_Atom_Long*>(frame)->body;
        record().positionSpeed = reinterpret_cast<const LV2_Atom_Float*>(speed)->body;
    }
}

/// Sends a note on the first output at the first and the last frame, and one on the second output
/// between them.
void chatter(Probe& self, std::uint32_t frames) {
    const auto write = [&self](Port port, std::initializer_list<std::uint32_t> at,
                               std::uint8_t note) {
        auto* sequence = static_cast<LV2_Atom_Sequence*>(self.ports[port]);
        lv2_atom_forge_set_buffer(&self.forge, static_cast<std::uint8_t*>(self.ports[port]),
                                  sequence->atom.size + sizeof(LV2_Atom));
        LV2_Atom_Forge_Frame frame;
        lv2_atom_forge_sequence_head(&self.forge, &frame, 0);
        if (self.control(kChatter) > 0.0F) {
            for (const auto time : at) {
                const std::array<std::uint8_t, 3> bytes{0x90, note, 100};
                lv2_atom_forge_frame_time(&self.forge, time);
                lv2_atom_forge_atom(&self.forge, bytes.size(), self.midiEvent);
                lv2_atom_forge_write(&self.forge, bytes.data(), bytes.size());
            }
        }
        lv2_atom_forge_pop(&self.forge, &frame);
    };
    write(kNotes, {0, frames - 1}, 60);
    write(kMoreNotes, {frames / 2}, 61);
    if (self.control(kChatter) > 1.0F) {
        self.log->printf(self.log->handle, self.note, "%d frames\n", static_cast<int>(frames));
    }
}

void run(LV2_Handle handle, std::uint32_t frames) {
    auto& self = probe(handle);
    self.isRunning = true;
    if (self.isControlled) {
        ++record().controlCallsDuringRun;
    }
    self.renderThread = std::this_thread::get_id();
    ++record().runs;
    record().corner = self.control(kCorner);
    readPosition(self);
    const auto* in = static_cast<const float*>(self.ports[kIn]);
    auto* out = static_cast<float*>(self.ports[kOut]);
    for (std::uint32_t index = 0; index < frames; ++index) {
        out[index] = in[index] * self.control(kGain);
    }
    chatter(self, frames);
    if (self.control(kWork) > 0.0F) {
        const int job = self.nextJob;
        if (self.schedule->schedule_work(self.schedule->handle, sizeof(job), &job) ==
            LV2_WORKER_SUCCESS) {
            ++self.nextJob;
        } else {
            ++record().refusedJobs;
        }
    }
    *static_cast<float*>(self.ports[kLatency]) = 64.0F;
    self.isRunning = false;
}

void deactivate(LV2_Handle handle) {
    const ControlCall call(probe(handle));
    ++record().deactivations;
}

void cleanup(LV2_Handle handle) {
    ++record().cleanups;
    delete &probe(handle);
}

LV2_Worker_Status work(LV2_Handle handle, LV2_Worker_Respond_Function respond,
                       LV2_Worker_Respond_Handle respondHandle, std::uint32_t size,
                       const void* data) {
    auto& self = probe(handle);
    if (self.isWorking.exchange(true)) {
        ++record().overlappingJobs;
    }
    if (self.renderThread.load() == std::this_thread::get_id()) {
        ++record().jobsOnRenderThread;
    }
    ++record().jobs;
    int job = 0;
    if (size == sizeof(job)) {
        std::memcpy(&job, data, sizeof(job));
        respond(respondHandle, sizeof(job), &job);
    }
    self.isWorking = false;
    return LV2_WORKER_SUCCESS;
}

LV2_Worker_Status workResponse(LV2_Handle handle, std::uint32_t /*size*/, const void* body) {
    auto& self = probe(handle);
    int job = 0;
    std::memcpy(&job, body, sizeof(job));
    ++record().answers;
    if (job != self.nextAnswer) {
        ++record().answersOutOfOrder;
    }
    self.nextAnswer = job + 1;
    return LV2_WORKER_SUCCESS;
}

LV2_Worker_Status endRun(LV2_Handle /*handle*/) {
    ++record().endRuns;
    return LV2_WORKER_SUCCESS;
}

template <typename Data>
Data* feature(const LV2_Feature* const* features, std::string_view uri) {
    for (; features != nullptr && *features != nullptr; ++features) {
        if (uri == (*features)->URI) {
            return static_cast<Data*>((*features)->data);
        }
    }
    return nullptr;
}

LV2_State_Status save(LV2_Handle handle, LV2_State_Store_Function store,
                      LV2_State_Handle storeHandle, std::uint32_t /*flags*/,
                      const LV2_Feature* const* features) {
    auto& self = probe(handle);
    const int secret = self.secret;
    store(storeHandle, self.secretKey, &secret, sizeof(secret), self.forge.Int,
          LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE);
    auto* mapPath = feature<LV2_State_Map_Path>(features, LV2_STATE__mapPath);
    auto* freePath = feature<LV2_State_Free_Path>(features, LV2_STATE__freePath);
    if (self.file.empty()) {
        char* path = self.makePath->path(self.makePath->handle, "folder/secret.txt");
        std::ofstream(path) << "kept";
        self.file = path;
        freePath->free_path(freePath->handle, path);
    }
    char* abstract = mapPath->abstract_path(mapPath->handle, self.file.c_str());
    store(storeHandle, self.fileKey, abstract, std::strlen(abstract) + 1, self.forge.Path,
          LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE);
    freePath->free_path(freePath->handle, abstract);
    return LV2_STATE_SUCCESS;
}

LV2_State_Status restore(LV2_Handle handle, LV2_State_Retrieve_Function retrieve,
                         LV2_State_Handle retrieveHandle, std::uint32_t /*flags*/,
                         const LV2_Feature* const* features) {
    auto& self = probe(handle);
    std::optional<ControlCall> call;
    if (!self.isThreadSafe) {
        call.emplace(self);
    }
    ++record().restores;
    std::size_t size = 0;
    std::uint32_t type = 0;
    std::uint32_t flags = 0;
    const void* secret = retrieve(retrieveHandle, self.secretKey, &size, &type, &flags);
    if (secret != nullptr && type == self.forge.Int && size == sizeof(std::int32_t)) {
        self.secret = *static_cast<const std::int32_t*>(secret);
        record().secret = self.secret.load();
    }
    auto* mapPath = feature<LV2_State_Map_Path>(features, LV2_STATE__mapPath);
    auto* freePath = feature<LV2_State_Free_Path>(features, LV2_STATE__freePath);
    const void* path = retrieve(retrieveHandle, self.fileKey, &size, &type, &flags);
    if (path != nullptr && type == self.forge.Path) {
        char* absolute = mapPath->absolute_path(mapPath->handle, static_cast<const char*>(path));
        std::string text;
        std::ifstream(absolute) >> text;
        record().hasFile = text == "kept";
        self.file = absolute;
        freePath->free_path(freePath->handle, absolute);
    }
    if (auto* schedule = feature<LV2_Worker_Schedule>(features, LV2_WORKER__schedule)) {
        if (schedule->schedule_work(schedule->handle, 0, nullptr) == LV2_WORKER_SUCCESS) {
            ++record().restoresWithSchedule;
        }
    }
    return LV2_STATE_SUCCESS;
}

std::uint32_t getOptions(LV2_Handle /*handle*/, LV2_Options_Option* /*options*/) {
    return LV2_OPTIONS_ERR_BAD_KEY;
}

std::uint32_t setOptions(LV2_Handle handle, const LV2_Options_Option* options) {
    auto& self = probe(handle);
    const ControlCall call(self);
    for (; options->key != 0; ++options) {
        if (options->key == self.contextName && options->type == self.forge.String) {
            copyText(record().contextName, options->value);
            if (std::string_view(record().contextName.data()) == "unheard of") {
                throw std::runtime_error("There is no such host.");
            }
        }
    }
    return LV2_OPTIONS_SUCCESS;
}

const void* extensionData(const char* uri) {
    static const LV2_Worker_Interface worker{work, workResponse, endRun};
    static const LV2_State_Interface state{save, restore};
    static const LV2_Options_Interface options{getOptions, setOptions};
    const std::string_view name(uri);
    if (name == LV2_WORKER__interface) {
        return &worker;
    }
    if (name == LV2_STATE__interface) {
        return &state;
    }
    return name == LV2_OPTIONS__interface ? &options : nullptr;
}

}  // namespace

extern "C" {

LV2_SYMBOL_EXPORT ProbeRecord* probeRecord() {
    return &record();
}

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    static const std::array<LV2_Descriptor, 2> descriptors{
        {{"urn:orvalo:zoo:probe", instantiate, connectPort, activate, run, deactivate, cleanup,
          extensionData},
         {"urn:orvalo:zoo:probe-safe", instantiate, connectPort, activate, run, deactivate, cleanup,
          extensionData}}};
    return index < descriptors.size() ? &descriptors[index] : nullptr;
}
}
