// An X11 UI that records its host's calls. The left button, also a drag, sets the gain to a
// hundredth of the pointer's x; the right button sends an atom; the middle one hangs the UI.

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <lv2/atom/atom.h>
#include <lv2/instance-access/instance-access.h>
#include <lv2/options/options.h>
#include <lv2/parameters/parameters.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>

#include <array>
#include <atomic>
#include <cmath>
#include <cstring>
#include <string_view>
#include <utility>

#include "tests/platform/plugin-ui/x11/effects/UIRecord.h"

namespace {

using orvalo::zoo::Misdeed;
using orvalo::zoo::UIRecord;

constexpr std::uint32_t kEvents = 2;
constexpr std::uint32_t kNotify = 3;
constexpr std::uint32_t kGain = 4;
constexpr std::uint32_t kCount = 5;
constexpr long kEventMask =
    ButtonPressMask | Button1MotionMask | StructureNotifyMask | ExposureMask;

UIRecord& record() {
    static UIRecord seen;
    return seen;
}

struct PluginUI {
    LV2UI_Write_Function write;
    LV2UI_Controller controller;
    LV2_URID_Map* map = nullptr;
    LV2UI_Resize* resize = nullptr;
    LV2UI_Request_Value* request = nullptr;
    Display* display = nullptr;
    Window window = 0;

    LV2_URID number(const char* uri) const { return map->map(map->handle, uri); }
};

void readOptions(const PluginUI& self, const LV2_Options_Option* options) {
    for (; options->key != 0; ++options) {
        if (options->key == self.number(LV2_UI__updateRate)) {
            record().updateRate = *static_cast<const float*>(options->value);
        } else if (options->key == self.number(LV2_UI__scaleFactor)) {
            record().scaleFactor = *static_cast<const float*>(options->value);
        } else if (options->key == self.number(LV2_PARAMETERS__sampleRate)) {
            record().sampleRate = *static_cast<const float*>(options->value);
        } else if (options->key == self.number(LV2_UI__windowTitle)) {
            record().windowTitle = static_cast<const char*>(options->value);
        }
    }
}

void readFeatures(PluginUI& self, const LV2_Feature* const* features) {
    auto& seen = record();
    const LV2_Options_Option* options = nullptr;
    seen.features.clear();
    for (; *features != nullptr; ++features) {
        const std::string_view uri((*features)->URI);
        void* data = (*features)->data;
        seen.features.emplace_back(uri);
        if (uri == LV2_URID__map) {
            self.map = static_cast<LV2_URID_Map*>(data);
        } else if (uri == LV2_UI__parent) {
            seen.parent = reinterpret_cast<unsigned long>(data);
        } else if (uri == LV2_UI__resize) {
            self.resize = static_cast<LV2UI_Resize*>(data);
        } else if (uri == LV2_UI__requestValue) {
            self.request = static_cast<LV2UI_Request_Value*>(data);
        } else if (uri == LV2_OPTIONS__options) {
            options = static_cast<const LV2_Options_Option*>(data);
        } else if (uri == LV2_INSTANCE_ACCESS_URI) {
            seen.instance = data;
        } else if (uri == LV2_UI__portMap) {
            const auto* ports = static_cast<const LV2UI_Port_Map*>(data);
            seen.gainIndex = ports->port_index(ports->handle, "gain");
            seen.unknownIndex = ports->port_index(ports->handle, "nowhere");
        }
    }
    readOptions(self, options);
}

void subscribe(PluginUI& self, const LV2_Feature* const* features) {
    for (; *features != nullptr; ++features) {
        if (std::string_view((*features)->URI) == LV2_UI__portSubscribe) {
            const auto* ports = static_cast<const LV2UI_Port_Subscribe*>((*features)->data);
            record().subscriptions =
                ports->subscribe(ports->handle, kNotify, self.number(LV2_ATOM__eventTransfer),
                                 nullptr) +
                10 * ports->subscribe(ports->handle, kEvents, self.number(LV2_ATOM__eventTransfer),
                                      nullptr) +
                100 * ports->subscribe(ports->handle, kCount, 0, nullptr) +
                1000 * ports->subscribe(ports->handle, kCount, self.number(LV2_UI__peakProtocol),
                                        nullptr) +
                10000 * ports->subscribe(ports->handle, 99, 0, nullptr);
        }
    }
}

LV2UI_Handle instantiate(const LV2UI_Descriptor* /*descriptor*/, const char* plugin,
                         const char* /*bundle*/, LV2UI_Write_Function write,
                         LV2UI_Controller controller, LV2UI_Widget* widget,
                         const LV2_Feature* const* features) {
    auto* self = new PluginUI{write, controller};
    auto& seen = record();
    readFeatures(*self, features);
    const std::string_view uri(plugin);
    if (uri.ends_with("refusing")) {
        delete self;
        return nullptr;
    }
    ++seen.instantiations;
    if (uri.ends_with("probe")) {
        subscribe(*self, features);
    }
    self->display = XOpenDisplay(nullptr);
    if (uri.ends_with("windowless")) {
        *widget = nullptr;
        return self;
    }
    self->window = XCreateSimpleWindow(self->display, seen.parent, 0, 0, 300, 200, 0, 0, 0x336699);
    XSelectInput(self->display, self->window, kEventMask | KeyPressMask);
    XMapWindow(self->display, self->window);
    XSync(self->display, False);
    seen.window = self->window;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): LV2 passes a window ID as a pointer.
    *widget = reinterpret_cast<LV2UI_Widget>(self->window);
    return self;
}

void cleanup(LV2UI_Handle handle) {
    auto* self = static_cast<PluginUI*>(handle);
    ++record().cleanups;
    if (self->window != 0) {
        XWindowAttributes attributes{};
        record().wasMappedAtCleanup =
            XGetWindowAttributes(self->display, self->window, &attributes) != 0 &&
            attributes.map_state == IsViewable;
        XDestroyWindow(self->display, self->window);
    }
    XCloseDisplay(self->display);
    delete self;
}

void portEvent(LV2UI_Handle handle, std::uint32_t port, std::uint32_t size, std::uint32_t format,
               const void* buffer) {
    const auto* self = static_cast<PluginUI*>(handle);
    auto& seen = record();
    if (format == 0 && port < seen.values.size()) {
        seen.values[port] = *static_cast<const float*>(buffer);
        ++seen.valueCounts[port];
    } else if (format == self->number(LV2_ATOM__eventTransfer) && port == kNotify) {
        const auto* atom = static_cast<const LV2_Atom*>(buffer);
        const auto* body = reinterpret_cast<const unsigned char*>(atom + 1);
        if (size == sizeof(*atom) + atom->size) {
            seen.events.emplace_back(body, body + atom->size);
        }
    }
}

void setGain(PluginUI& self, int x) {
    const float gain = static_cast<float>(x) / 100.0F;
    self.write(self.controller, kGain, sizeof(gain), 0, &gain);
}

void sendAtom(PluginUI& self) {
    struct {
        LV2_Atom atom;
        std::array<unsigned char, 5> body;
    } message{{5, self.number(LV2_ATOM__Chunk)}, {'h', 'e', 'l', 'l', 'o'}};
    self.write(self.controller, kEvents, sizeof(message.atom) + 5,
               self.number(LV2_ATOM__eventTransfer), &message);
}

void loop() {
    // Never true; atomic, so that the compiler keeps the loop.
    static std::atomic<bool> isOver{false};
    while (!isOver) {
    }
}

void handleEvent(PluginUI& self, XEvent& event) {
    auto& seen = record();
    switch (event.type) {
        case ButtonPress:
            ++seen.clicks;
            if (event.xbutton.button == Button1) {
                setGain(self, event.xbutton.x);
            } else if (event.xbutton.button == Button2) {
                loop();
            } else {
                sendAtom(self);
            }
            break;
        case MotionNotify:
            setGain(self, event.xmotion.x);
            break;
        case KeyPress:
            seen.keys.push_back(static_cast<unsigned>(XLookupKeysym(&event.xkey, 0)));
            if (seen.keyMask) {
                event.xkey.window = seen.parent;
                XSendEvent(self.display, seen.parent, True, *seen.keyMask, &event);
            }
            break;
        case ConfigureNotify:
            seen.width = event.xconfigure.width;
            seen.height = event.xconfigure.height;
            break;
        case Expose:
            ++seen.exposures;
            break;
        default:
            break;
    }
}

void setHints(PluginUI& self, int width, int height, bool isLargest) {
    XSizeHints hints{};
    hints.flags = PMinSize | (isLargest ? PMaxSize : 0);
    hints.min_width = hints.max_width = width;
    hints.min_height = hints.max_height = height;
    XSetWMNormalHints(self.display, self.window, &hints);
}

void writeNonsense(PluginUI& self) {
    const float value = NAN;
    const float sound = 1.0F;
    const LV2_Atom longer{4000, 1};
    self.write(self.controller, kGain, sizeof(value), 0, &value);
    self.write(self.controller, kGain, 1, 0, &sound);
    self.write(self.controller, kCount, sizeof(sound), 0, &sound);
    self.write(self.controller, 99, sizeof(sound), 0, &sound);
    self.write(self.controller, kGain, sizeof(sound), 12345, &sound);
    self.write(self.controller, kEvents, sizeof(longer), self.number(LV2_ATOM__eventTransfer),
               &longer);
    self.write(self.controller, kEvents, 3, self.number(LV2_ATOM__eventTransfer), &longer);
}

bool misbehave(PluginUI& self, Misdeed misdeed) {
    switch (misdeed) {
        case Misdeed::none:
            break;
        case Misdeed::close:
            return true;
        case Misdeed::destroyWindow:
            XDestroyWindow(self.display, std::exchange(self.window, 0));
            break;
        case Misdeed::badWindow:
            XMapWindow(self.display, 0x7ffffff);
            XRaiseWindow(self.display, 0x7fffffe);
            XSync(self.display, False);
            break;
        case Misdeed::wantByFeature:
            self.resize->ui_resize(self.resize->handle, 400, 300);
            break;
        case Misdeed::wantByWindow:
            XResizeWindow(self.display, self.window, 500, 120);
            break;
        case Misdeed::fixHints:
            setHints(self, 200, 150, true);
            break;
        case Misdeed::growHints:
            setHints(self, 900, 700, false);
            break;
        case Misdeed::takeKeyboard:
            XSetInputFocus(self.display, self.window, RevertToParent, CurrentTime);
            break;
        case Misdeed::writeNonsense:
            writeNonsense(self);
            break;
        case Misdeed::secondWindow:
            record().second =
                XCreateSimpleWindow(self.display, record().parent, 0, 0, 5, 5, 0, 0, 0xFFFFFFU);
            XMapRaised(self.display, record().second);
            XMoveResizeWindow(self.display, record().second, 10, 20, 60, 50);
            break;
        case Misdeed::ignoreKeys:
            XSelectInput(self.display, self.window, kEventMask);
            break;
        case Misdeed::callOut:
            record().onCall();
            break;
        case Misdeed::requestValue:
            record().requested = self.request->request(self.request->handle,
                                                       self.number(LV2_ATOM__Path), 0, nullptr);
            break;
    }
    XFlush(self.display);
    return false;
}

int idle(LV2UI_Handle handle) {
    auto& self = *static_cast<PluginUI*>(handle);
    ++record().idles;
    while (XPending(self.display) > 0) {
        XEvent event;
        XNextEvent(self.display, &event);
        handleEvent(self, event);
    }
    return misbehave(self, std::exchange(record().misdeed, Misdeed::none)) ? 1 : 0;
}

int resized(LV2UI_Feature_Handle /*handle*/, int width, int height) {
    record().toldWidth = width;
    record().toldHeight = height;
    return 0;
}

const void* extensionData(const char* uri) {
    static const LV2UI_Idle_Interface idleExtension{idle};
    static const LV2UI_Resize resizeExtension{nullptr, resized};
    if (std::string_view(uri) == LV2_UI__idleInterface) {
        return &idleExtension;
    }
    return std::string_view(uri) == LV2_UI__resize ? &resizeExtension : nullptr;
}

constexpr LV2UI_Descriptor describe(const char* uri) {
    return {uri, instantiate, cleanup, portEvent, extensionData};
}

const std::array kDescriptors{
    describe("urn:orvalo:ui:probe#ui"),      describe("urn:orvalo:ui:fixed#ui"),
    describe("urn:orvalo:ui:direct#ui"),     describe("urn:orvalo:ui:refusing#ui"),
    describe("urn:orvalo:ui:windowless#ui"),
};

}  // namespace

LV2_SYMBOL_EXPORT const LV2UI_Descriptor* lv2ui_descriptor(std::uint32_t index) {
    return index < kDescriptors.size() ? &kDescriptors[index] : nullptr;
}

LV2_SYMBOL_EXPORT UIRecord* uiRecord() {
    return &record();
}
