#include "effect/ui/PluginUI.h"

#include <chrono>
#include <cmath>
#include <cstring>
#include <utility>

#include "effect/ui/KeyReading.h"
#include "effect/ui/paint/ScenePainter.h"

namespace orvalo::effect::ui {

namespace {

/// A smaller change of a meter is not visible.
constexpr float visibleChange = 0.02F;

double clockSeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

PluginWindow::Size scaled(int width, int height, double scale) {
    return {static_cast<int>(std::lround(width * scale)),
            static_cast<int>(std::lround(height * scale))};
}

}  // namespace

std::unique_ptr<PluginUI> PluginUI::open(const std::string& bundle, LV2UI_Write_Function write,
                                         LV2UI_Controller controller,
                                         const LV2_Feature* const* features) {
    const Features offered(features);
    const auto size = scaled(Layout::naturalWidth, Layout::naturalHeight, offered.scale);
    auto window = PluginWindow::open(
        offered.parent, size, scaled(Layout::leastWidth, Layout::leastHeight, offered.scale));
    if (window == nullptr) {
        return nullptr;
    }
    std::unique_ptr<PluginUI> self(
        new PluginUI(offered, bundle, write, controller, std::move(window)));
    if (offered.resize != nullptr) {
        offered.resize->ui_resize(offered.resize->handle, size.width, size.height);
    }
    return self;
}

PluginUI::PluginUI(const Features& features, const std::string& bundle, LV2UI_Write_Function write,
                   LV2UI_Controller controller, std::unique_ptr<PluginWindow> window)
    : scale_(features.scale),
      // A little less than the period, because the host does not call idle() at exact times.
      drawEvery_(0.9 / features.updateRate),
      host_(features, write, controller),
      store_(bundle, features.presetWriter),
      editor_(scene_, host_, store_),
      pointer_(scene_, editor_),
      keys_(scene_, editor_),
      window_(std::move(window)) {
    editor_.readPresets();
    adoptSize();
}

PluginUI::~PluginUI() {
    pointer_.release();
    editor_.notes().releaseKeys();
}

void PluginUI::portEvent(std::uint32_t port, std::uint32_t size, std::uint32_t format,
                         const void* buffer) {
    if (buffer != nullptr) {
        if (const auto levels = host_.spectrumIn(port, size, format, buffer)) {
            if (scene_.spectrum.take(*levels)) {
                markSpectrumChanged();
            }
            return;
        }
    }
    if (format != 0 || size != sizeof(float) || buffer == nullptr) {
        return;
    }
    float value = 0.0F;
    std::memcpy(&value, buffer, sizeof value);
    if (!std::isfinite(value)) {
        return;
    }
    if (const auto parameter = host_.ports().parameterAt(port)) {
        editor_.receive(*parameter, value);
    } else if (const auto reading = host_.ports().readingAt(port)) {
        readReading(*reading, value);
    }
}

void PluginUI::readReading(Reading reading, float value) {
    const double now = clockSeconds();
    const auto take = [&](float Levels::*level) {
        receivedLevels_.*level = value;
        if (runs_.isRunning(now) && scene_.history.record(receivedLevels_, now)) {
            markHistoryChanged();
        }
    };
    switch (reading) {
        case Reading::reduction:
            return take(&Levels::reduction);
        case Reading::ducking:
            scene_.beatLight.update(value, scene_.values.isOn(Parameter::beat), now);
            return take(&Levels::ducking);
        case Reading::inputLevel:
            return take(&Levels::input);
        case Reading::outputLevel:
            return take(&Levels::output);
        case Reading::midiInCount:
            return scene_.lightIn.update(value, now);
        case Reading::midiOutCount:
            return scene_.lightOut.update(value, now);
        case Reading::truePeak:
            receivedTruePeak_ = value;
            return;
        case Reading::runCount:
            return runs_.update(value, now);
    }
}

void PluginUI::markHistoryChanged() {
    if (!scene_.pausedHistory) {
        scene_.markChanged(Part::history);
    }
}

void PluginUI::advanceLevels(double now) {
    const double passed = now - std::exchange(levelsAt_, now);
    if (runs_.isRunning(now)) {
        scene_.levels = receivedLevels_;
        if (scene_.history.record(receivedLevels_, now)) {
            markHistoryChanged();
        }
        const float before = scene_.meterMemory.truePeak();
        if (scene_.meterMemory.update(scene_.levels, receivedTruePeak_, now)) {
            scene_.markChanged(Part::meters);
        }
        if (scene_.meterMemory.truePeak() != before) {
            scene_.markChanged(Part::truePeak);
        }
    } else {
        scene_.levels = fallen(scene_.levels, passed);
        scene_.history.skip(now);
        if (scene_.spectrum.fall(passed)) {
            markSpectrumChanged();
        }
        if (scene_.meterMemory.update(scene_.levels, Levels::lowest, now)) {
            scene_.markChanged(Part::meters);
        }
    }
    markLevelsChanged();
}

void PluginUI::markLevelsChanged() {
    for (const auto level :
         {&Levels::input, &Levels::output, &Levels::reduction, &Levels::ducking}) {
        const float value = scene_.levels.*level;
        float& drawn = drawnLevels_.*level;
        if (std::abs(drawn - value) >= visibleChange ||
            (value != drawn && (value <= Levels::lowest || value == 0.0F))) {
            scene_.markChanged(Part::meters);
            scene_.markChanged(Part::curve);
            drawn = value;
        }
    }
}

void PluginUI::markSpectrumChanged() {
    if (scene_.layout.page == Page::sideChain) {
        scene_.markChanged(Part::graph);
    }
}

/// Requests the spectrum while it is seen. The effect computes it only after a request.
void PluginUI::requestSpectrum(double now) {
    if (scene_.layout.page == Page::sideChain && !scene_.layout.graph.isEmpty() &&
        now - spectrumRequested_ >= Spectrum::requestSeconds && runs_.isRunning(now) &&
        window_->isVisible(now)) {
        spectrumRequested_ = now;
        host_.requestSpectrum();
    }
}

bool PluginUI::idle() {
    while (const auto event = window_->nextEvent()) {
        handle(*event);
    }
    if (window_->isClosed()) {
        return true;
    }
    const double now = clockSeconds();
    advanceTime(now);
    checkPresets(now);
    requestSpectrum(now);
    if ((scene_.isChanged() || isUncovered_) && now - lastDrawn_ >= drawEvery_) {
        if (window_->isVisible(now)) {
            draw(now);
            lastDrawn_ = now;
        } else if (!isPainted_) {
            // Paint in memory before the window becomes visible.
            paint(now);
        }
    }
    return window_->isClosed();
}

void PluginUI::advanceTime(double now) {
    advanceLevels(now);
    if (const bool shows = tip_.update(scene_.hovered, now); shows != scene_.showsTip) {
        scene_.showsTip = shows;
        scene_.markAllChanged();
    }
    const double in = scene_.lightIn.brightness(now);
    const double out = scene_.lightOut.brightness(now);
    const double beat = scene_.beatLight.brightness(now);
    if (beat != std::exchange(beatLight_, beat)) {
        scene_.markChanged(Part::tabs);
        if (scene_.layout.page == Page::beats) {
            scene_.markChanged(Part::graph);
        }
    }
    if (in != std::exchange(lightIn_, in)) {
        scene_.markChanged(Part::lightIn);
    }
    if (out != std::exchange(lightOut_, out)) {
        scene_.markChanged(Part::lightOut);
    }
}

/// Looks for the presets that the host was asked to write.
void PluginUI::checkPresets(double now) {
    constexpr double period = 0.1;
    if (!store_.isWaiting() || now - presetsChecked_ < period) {
        return;
    }
    presetsChecked_ = now;
    if (auto complaint = store_.check(now); !complaint.empty()) {
        editor_.readPresets();
        editor_.setNotice(std::move(complaint));
    }
}

std::vector<Rect> PluginUI::paint(double now) {
    auto& picture = window_->picture();
    const auto size = window_->size();
    if (picture.resize(size.width, size.height)) {
        scene_.markAllChanged();
    }
    auto areas = paintScene(picture.context(), scene_, now);
    scene_.markDrawn();
    isPainted_ = true;
    return areas;
}

void PluginUI::draw(double now) {
    auto areas = paint(now);
    if (std::exchange(isUncovered_, false)) {
        areas = {scene_.layout.whole()};
    }
    window_->picture().present(areas);
    window_->flush();
}

void PluginUI::adoptSize() {
    const auto size = window_->size();
    if (size.width == scene_.layout.width && size.height == scene_.layout.height) {
        return;
    }
    scene_.layout = Layout::of(size.width, size.height, scale_, scene_.layout.page);
    if (scene_.list) {
        scene_.layout.showPreset(*scene_.list, scene_.presets.presets().size());
    }
    scene_.markAllChanged();
}

void PluginUI::resize(int width, int height) {
    window_->requestSize({width, height});
}

void PluginUI::handle(const XEvent& event) {
    switch (event.type) {
        case Expose:
            isUncovered_ = true;
            break;
        case ConfigureNotify:
            adoptSize();
            break;
        case ButtonPress:
            handleButton(event.xbutton);
            break;
        case ButtonRelease:
            if (event.xbutton.button == Button1) {
                pointer_.release();
            }
            break;
        case MotionNotify: {
            const auto& motion = event.xmotion;
            if ((motion.state & Button1Mask) == 0) {
                // If the window was hidden meanwhile, another one got the button's release.
                pointer_.release();
            }
            pointer_.move({.x = static_cast<double>(motion.x),
                           .y = static_cast<double>(motion.y),
                           .time = 0.001 * static_cast<double>(motion.time),
                           .fine = asksForFine(motion.state)});
            break;
        }
        case LeaveNotify:
            pointer_.leave();
            if (!window_->ownsFocus()) {
                // Without the focus the window gets keys, and their releases, only below the
                // pointer.
                editor_.notes().releaseKeys();
            }
            break;
        case KeyPress:
            handleKey(event.xkey);
            break;
        case KeyRelease:
            keys_.release(event.xkey.keycode);
            break;
        case UnmapNotify:
            pointer_.release();
            editor_.notes().releaseKeys();
            break;
        case FocusIn:
            editor_.setHasKeyboard(true);
            break;
        case FocusOut:
            editor_.setHasKeyboard(false);
            editor_.notes().releaseKeys();
            break;
        case ClientMessage:
            if (const auto atEnd = window_->entersAtEnd(event.xclient)) {
                editor_.setHasKeyboard(true);
                keys_.enter(*atEnd);
            }
            break;
        default:
            break;
    }
}

void PluginUI::handleButton(const XButtonEvent& button) {
    const Pointer pointer{.x = static_cast<double>(button.x),
                          .y = static_cast<double>(button.y),
                          .time = 0.001 * static_cast<double>(button.time),
                          .fine = asksForFine(button.state)};
    // X11 reports the wheel as buttons 4 to 7: up, down, left, right.
    constexpr unsigned int wheelLeft = 6;
    constexpr unsigned int wheelRight = 7;
    tip_.dismiss(scene_.hovered);
    switch (button.button) {
        case Button1:
            window_->takeKeyboard(button.time);
            pointer_.press(pointer);
            break;
        case Button4:
        case wheelRight:
            pointer_.wheel(pointer, 1);
            break;
        case Button5:
        case wheelLeft:
            pointer_.wheel(pointer, -1);
            break;
        default:
            break;
    }
}

void PluginUI::handleKey(const XKeyEvent& key) {
    // A host may forward keys without giving the window the keyboard focus.
    editor_.setHasKeyboard(true);
    tip_.dismiss(scene_.hovered);
    const auto press = readKey(key);
    if (!press || !keys_.press(*press)) {
        window_->forwardKey(key);
    }
}

}  // namespace orvalo::effect::ui
