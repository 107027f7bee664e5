// The LV2 entry point of the UI.

#include <lv2/ui/ui.h>

#include <cstring>
#include <exception>

#include "effect/Uris.h"
#include "effect/ui/PluginUI.h"
#include "effect/ui/paint/Brush.h"

namespace {

using orvalo::effect::ui::PluginUI;

PluginUI& ui(LV2UI_Handle handle) {
    return *static_cast<PluginUI*>(handle);
}

/// Runs the work and returns `otherwise` if it throws: exceptions must not reach the C code of a
/// host.
template <typename Result, typename Work>
Result guarded(Result otherwise, const Work& work) {
    try {
        return work();
    } catch (const std::exception&) {
        return otherwise;
    }
}

LV2UI_Handle instantiate(const LV2UI_Descriptor* /*descriptor*/, const char* plugin,
                         const char* bundle, LV2UI_Write_Function write,
                         LV2UI_Controller controller, LV2UI_Widget* widget,
                         const LV2_Feature* const* features) {
    if (plugin == nullptr || (std::strcmp(plugin, orvalo::effect::pluginUri) != 0 &&
                              std::strcmp(plugin, orvalo::effect::sideChainPluginUri) != 0)) {
        return nullptr;
    }
    return guarded<LV2UI_Handle>(nullptr, [&]() -> LV2UI_Handle {
        auto opened = PluginUI::open(bundle == nullptr ? "" : bundle, write, controller, features);
        if (opened != nullptr && widget != nullptr) {
            // NOLINTNEXTLINE(performance-no-int-to-ptr): LV2 passes a window ID as a pointer
            *widget = reinterpret_cast<LV2UI_Widget>(opened->window());
        }
        return opened.release();
    });
}

void cleanup(LV2UI_Handle handle) {
    delete &ui(handle);
}

void portEvent(LV2UI_Handle handle, std::uint32_t port, std::uint32_t size, std::uint32_t format,
               const void* buffer) {
    guarded(0, [&] {
        ui(handle).portEvent(port, size, format, buffer);
        return 0;
    });
}

int idle(LV2UI_Handle handle) {
    return guarded(0, [&] { return ui(handle).idle() ? 1 : 0; });
}

int resize(LV2UI_Feature_Handle handle, int width, int height) {
    return guarded(1, [&] {
        ui(handle).resize(width, height);
        return 0;
    });
}

const void* extensionData(const char* uri) {
    static const LV2UI_Idle_Interface idling{idle};
    static const LV2UI_Resize resizing{nullptr, resize};
    if (std::strcmp(uri, LV2_UI__idleInterface) == 0) {
        return &idling;
    }
    return std::strcmp(uri, LV2_UI__resize) == 0 ? &resizing : nullptr;
}

}  // namespace

LV2_SYMBOL_EXPORT const LV2UI_Descriptor* lv2ui_descriptor(std::uint32_t index) {
    static const LV2UI_Descriptor descriptor{"urn:tessaly:orvalo:ui", instantiate, cleanup,
                                             portEvent, extensionData};
    if (index != 0) {
        return nullptr;
    }
    // Now rather than when the first picture is drawn: a host loads the library earlier.
    static const bool areFontsOpen = guarded(false, [] {
        orvalo::effect::ui::openFonts();
        return true;
    });
    static_cast<void>(areFontsOpen);
    return &descriptor;
}
