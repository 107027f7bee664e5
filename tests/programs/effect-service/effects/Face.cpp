// An effect whose UI is a plain coloured window. What it is told, it writes into controls:
// where it was clicked, the width that it was given and the number of its turns. Keys it sends on.
// It ends the process when it is cleaned up inside of a turn.

#include <X11/Xlib.h>
#include <glib.h>
#include <lv2/core/lv2.h>
#include <lv2/ui/ui.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

#include "tests/programs/effect-service/effects/FaceDeed.h"

namespace {

using orvalo::zoo::FaceDeed;

enum Port { kIn, kOut, kDeed, kLevel, kWidth, kTurns };

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

struct Face {
    LV2UI_Write_Function write;
    LV2UI_Controller controller;
    LV2UI_Resize* resize = nullptr;
    Display* display = nullptr;
    Window parent = 0;
    Window window = 0;
    FaceDeed deed = FaceDeed::none;
    float turns = 0.0F;
    bool isInTurn = false;

    void say(Port port, float value) const { write(controller, port, sizeof(value), 0, &value); }
    void askForSize() const { resize->ui_resize(resize->handle, 432, 321); }
    /// What has come to the window; whether it was a message.
    bool takeEvents() const {
        bool isMessage = false;
        while (XPending(display) > 0) {
            XEvent event;
            XNextEvent(display, &event);
            isMessage = isMessage || event.type == ClientMessage;
            if (event.type == ButtonPress) {
                say(kLevel, static_cast<float>(event.xbutton.x));
            } else if (event.type == KeyPress) {
                event.xkey.window = parent;
                XSendEvent(display, parent, True, KeyPressMask, &event);
            }
        }
        return isMessage;
    }
    void nest() {
        isInTurn = true;
        const auto clock = g_timeout_add(
            1, [](void*) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
        askForSize();
        while (!takeEvents()) {
            g_main_context_iteration(nullptr, TRUE);
        }
        g_source_remove(clock);
        isInTurn = false;
    }
};

LV2UI_Handle makeFace(const LV2UI_Descriptor* /*descriptor*/, const char* /*plugin*/,
                      const char* /*bundle*/, LV2UI_Write_Function write,
                      LV2UI_Controller controller, LV2UI_Widget* widget,
                      const LV2_Feature* const* features) {
    auto* self = new Face{write, controller};
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
    *widget = reinterpret_cast<LV2UI_Widget>(self->window);
    return self;
}

void endFace(LV2UI_Handle handle) {
    auto* self = static_cast<Face*>(handle);
    if (self->isInTurn) {
        std::_Exit(8);
    }
    XDestroyWindow(self->display, self->window);
    XCloseDisplay(self->display);
    delete self;
}

void takeValue(LV2UI_Handle handle, std::uint32_t port, std::uint32_t /*size*/,
               std::uint32_t format, const void* buffer) {
    if (port == kDeed && format == 0) {
        static_cast<Face*>(handle)->deed =
            static_cast<FaceDeed>(static_cast<int>(*static_cast<const float*>(buffer)));
    }
}

int idle(LV2UI_Handle handle) {
    auto& self = *static_cast<Face*>(handle);
    self.say(kTurns, ++self.turns);
    self.takeEvents();
    switch (std::exchange(self.deed, FaceDeed::none)) {
        case FaceDeed::none:
            break;
        case FaceDeed::close:
            return 1;
        case FaceDeed::askForSize:
            self.askForSize();
            break;
        case FaceDeed::badWindow:
            XMapWindow(self.display, 0x7ffffff);
            XSync(self.display, False);
            break;
        case FaceDeed::leave:
            std::_Exit(7);
        case FaceDeed::nest:
            self.say(kDeed, 0.0F);
            self.nest();
            return 1;
    }
    return 0;
}

int setSize(LV2UI_Feature_Handle handle, int width, int /*height*/) {
    static_cast<Face*>(handle)->say(kWidth, static_cast<float>(width));
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

extern "C" LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    static const LV2_Descriptor descriptor{"urn:orvalo:service:face",
                                           makeEffect,
                                           connectPort,
                                           nullptr,
                                           run,
                                           nullptr,
                                           endEffect,
                                           nullptr};
    return index == 0 ? &descriptor : nullptr;
}

extern "C" LV2_SYMBOL_EXPORT const LV2UI_Descriptor* lv2ui_descriptor(std::uint32_t index) {
    static const LV2UI_Descriptor descriptor{"urn:orvalo:service:face#ui", makeFace, endFace,
                                             takeValue, extensionData};
    return index == 0 ? &descriptor : nullptr;
}
