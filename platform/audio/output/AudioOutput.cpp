#include "platform/audio/output/AudioOutput.h"

#include <glib.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/audio/output/AlsaDevice.h"
#include "platform/audio/output/JackDevice.h"
#include "platform/audio/output/PulseDevice.h"
#include "platform/audio/output/SupervisedOutput.h"

namespace orvalo {

std::unique_ptr<AudioOutput> AudioOutput::system() {
    const char* variable = g_getenv("ORVALO_AUDIO_OUTPUT");
    const std::string setting = variable != nullptr ? variable : "auto";
    std::vector<std::unique_ptr<OutputDevice>> devices;
    auto absence = SupervisedOutput::Absence::fail;
    if (setting == "jack") {
        devices.push_back(std::make_unique<JackDevice>());
    } else if (setting == "pulse") {
        devices.push_back(std::make_unique<PulseDevice>());
    } else if (setting == "alsa") {
        devices.push_back(std::make_unique<AlsaDevice>());
    } else {
        absence = SupervisedOutput::Absence::standIn;
        if (setting != "auto" && setting != "null") {
            g_warning(
                "ORVALO_AUDIO_OUTPUT is \"%s\", not auto, jack, pulse, alsa or null; "
                "taken as auto.",
                setting.c_str());
        }
        if (setting != "null") {
            devices.push_back(std::make_unique<JackDevice>());
            devices.push_back(std::make_unique<PulseDevice>());
            devices.push_back(std::make_unique<AlsaDevice>());
        }
    }
    return std::make_unique<SupervisedOutput>(std::move(devices), absence);
}

}  // namespace orvalo
