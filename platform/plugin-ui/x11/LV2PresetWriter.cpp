#include "platform/plugin-ui/x11/LV2PresetWriter.h"

namespace orvalo {

namespace {

const LV2PresetRequests& requests(void* handle) {
    return *static_cast<const LV2PresetRequests*>(handle);
}

int write(void* handle, const char* folder, const char* label, const char* comment,
          std::uint32_t count, const char* const* symbols, const float* values) {
    if (folder == nullptr || label == nullptr || symbols == nullptr || values == nullptr) {
        return 1;
    }
    LV2PresetRequests::Values list;
    for (std::uint32_t i = 0; i < count; ++i) {
        list.emplace_back(symbols[i], values[i]);
    }
    requests(handle).write(folder, label, comment == nullptr ? "" : comment, list);
    return 0;
}

int remove(void* handle, const char* folder) {
    if (folder == nullptr) {
        return 1;
    }
    requests(handle).remove(folder);
    return 0;
}

}  // namespace

LV2PresetWriter::LV2PresetWriter(LV2PresetRequests requests)
    : requests_(std::move(requests)),
      // The functions only read what the handle leads to.
      data_{const_cast<LV2PresetRequests*>(&requests_), write, remove},
      feature_{kPresetWriterURI, &data_} {}

}  // namespace orvalo
