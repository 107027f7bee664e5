// An effect whose UI is a coloured window. The UI sets controls to the place of the last click, its
// width and the number of its updates. It sends all keys on. It ends the process when it is cleaned
// up inside of an update.

#include <X11/Xlib.h>
#include <glib.h>
#include <lv2/core/lv2.h>
#include <lv2/ui/ui.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

#include "tests/programs/effect-service/effects/UIDeed.h"

namespace {

using orvalo::zoo::UIDeed;

enum Port { kIn, kOut, kDeed, kLevel, kWidth, kUpdates };

struct Effect {
    std::array<float*, 6> ports{};
};

LV2_Handle makeEffect(const LV2_Descriptor* /*descriptor*/, double /*rate*/, const char* /*bundle*/,
                      const LV2_Feature* const* /*features*/) {
    return new Effect;
}

void connectPort(LV2_Handle handle, std::uint32_t port, void* location) {
    static_cast<Effect*>(handle)->ports[port] = static_cast<float*>(location);
}

void run(LV2_Handle handle, std::uint32_t frames) {
    const auto& ports = static_cast<Effect*>(handle)->ports;
    std::memcpy(ports[kOut], ports[kIn], frames * sizeof(float));
}

void endEffect(LV2_Handle handle) {
    delete static_cast<Effect*>(handle);
}

struct UI {
    LV2UI_Write_Function write;
    LV2UI_Controller controller;
    LV2UI_Resize* resize = nullptr;
    Display* display = nullptr;
    Window parent = 0;
    Window window = 0;
    UIDeed deed = UIDeed::none;
    float updates = 0.0F;
    bool isUpdating = false;

    void setControl(Port port, float value) const {
        write(controller, port, sizeof(value), 0, &value);
    }
    void requestSize() const { resize->ui_resize(resize->handle, 432, 321); }
    /// Handles the events of the window; true if there was a message.
    bool handleEvents() const {
        bool isMessage = false;
        while (XPending(display) > 0) {
            XEvent event;
            XNextEvent(display, &event);
            isMessage = isMessage || event.type == ClientMessage;
            if (event.type == ButtonPress) {
                setControl(kLevel, static_cast<float>(event.xbutton.x));
            } else if (event.type == KeyPress) {
                event.xkey.window = parent;
                XSendEvent(display, parent, True, KeyPressMask, &event);
            }
        }
        return isMessage;
    }
    void nest() {
        isUpdating = true;
        const auto clock = g_timeout_add(
            1, [](void*) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
        requestSize();
        while (!handleEvents()) {
            g_main_context_iteration(nullptr, TRUE);
        }
        g_source_remove(clock);
        isUpdating = false;
    }
};

LV2UI_Handle makeUI(const LV2UI_Descriptor* /*descriptor*/, const char* /*plugin*/,
                    const char* /*bundle*/, LV2UI_Write_Function write, LV2UI_Controller controller,
                    LV2UI_Widget* widget, const LV2_Feature* const* features) {
    auto* self = new UI{write, controller};
    for (; *features != nullptr; ++features) {
        const std::string_view uri((*features)->URI);
        if (uri == LV2_UI__parent) {
            self->parent = reinterpret_cast<Window>((*features)->data);
        } else if (uri == LV2_UI__resize) {
            self->resize = static_cast<LV2UI_Resize*>((*features)->data);
        }
    }
    self->display = XOpenDisplay(nullptr);
    self->window = XCreateSimpleWindow(self->display, self->parent, 0, 0, 300, 200, 0, 0, 0x336699);
    XSelectInput(self->display, self->window, ButtonPressMask | KeyPressMask);
    XMapWindow(self->display, self->window);
    XSync(self->display, False);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): LV2 has windows as pointers.
    *widget = reinterpret_cast<LV2UI_Widget>(self->window);
    return self;
}

void endUI(LV2UI_Handle handle) {
    auto* self = static_cast<UI*>(handle);
    if (self->isUpdating) {
        std::_Exit(8);
    }
    XDestroyWindow(self->display, self->window);
    XCloseDisplay(self->display);
    delete self;
}

void takeValue(LV2UI_Handle handle, std::uint32_t port, std::uint32_t /*size*/,
               std::uint32_t format, const void* buffer) {
    if (port == kDeed && format == 0) {
        static_cast<UI*>(handle)->deed =
            static_cast<UIDeed>(static_cast<int>(*static_cast<const float*>(buffer)));
    }
}

int idle(LV2UI_Handle handle) {
    auto& self = *static_cast<UI*>(handle);
    self.setControl(kUpdates, ++self.updates);
    self.handleEvents();
    switch (std::exchange(self.deed, UIDeed::none)) {
        case UIDeed::none:
            break;
        case UIDeed::close:
            return 1;
        case UIDeed::requestSize:
            self.requestSize();
            break;
        case UIDeed::badWindow:
            XMapWindow(self.display, 0x7ffffff);
            XSync(self.display, False);
            break;
        case UIDeed::leave:
            std::_Exit(7);
        case UIDeed::nest:
            self.setControl(kDeed, 0.0F);
            self.nest();
            return 1;
    }
    return 0;
}

int setSize(LV2UI_Feature_Handle handle, int width, int /*height*/) {
    static_cast<UI*>(handle)->setControl(kWidth, static_cast<float>(width));
    return 0;
}

const void* extensionData(const char* uri) {
    static const LV2UI_Idle_Interface idling{idle};
    static const LV2UI_Resize resizing{nullptr, setSize};
    const std::string_view name(uri);
    if (name == LV2_UI__idleInterface) {
        return &idling;
    }
    return name == LV2_UI__resize ? &resizing : nullptr;
}

}  // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    static const LV2_Descriptor descriptor{"urn:orvalo:service:window",
                                           makeEffect,
                                           connectPort,
                                           nullptr,
                                           run,
                                           nullptr,
                                           endEffect,
                                           nullptr};
    return index == 0 ? &descriptor : nullptr;
}

LV2_SYMBOL_EXPORT const LV2UI_Descriptor* lv2ui_descriptor(std::uint32_t index) {
    static const LV2UI_Descriptor descriptor{"urn:orvalo:service:window#ui", makeUI, endUI,
                                             takeValue, extensionData};
    return index == 0 ? &descriptor : nullptr;
}
