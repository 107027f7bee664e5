#pragma once

#include <memory>
#include <string>
#include <vector>

#include "effect/ui/HostLink.h"
#include "effect/ui/PluginWindow.h"
#include "effect/ui/model/Editor.h"
#include "effect/ui/model/KeyInput.h"
#include "effect/ui/model/PointerInput.h"
#include "effect/ui/model/Scene.h"

namespace orvalo::effect::ui {

/// One interface of one instance of the effect. Everything runs on the host's interface thread.
class UserInterface {
  public:
    /// Absent, with a line on standard error, where the interface cannot be shown. `bundle` is the
    /// bundle's folder.
    static std::unique_ptr<UserInterface> open(const std::string& bundle,
                                               LV2UI_Write_Function write,
                                               LV2UI_Controller controller,
                                               const LV2_Feature* const* features);

    UserInterface(const UserInterface&) = delete;
    UserInterface& operator=(const UserInterface&) = delete;

    Window window() const { return window_->id(); }

    /// A port has a value; other protocols than the plain float, and other ports, are ignored.
    void portEvent(std::uint32_t port, std::uint32_t size, std::uint32_t format,
                   const void* buffer);

    /// Takes the user's events and draws what has changed; true once the window is gone.
    bool idle();

    /// Asks for another size of the window, in pixels.
    void resize(int width, int height);

  private:
    UserInterface(const Features& features, const std::string& bundle, LV2UI_Write_Function write,
                  LV2UI_Controller controller, std::unique_ptr<PluginWindow> window);

    void readReading(Reading reading, float value);
    void handle(const XEvent& event);
    void handleButton(const XButtonEvent& button);
    void handleKey(const XKeyEvent& key);
    void adoptSize();
    void passTime(double now);
    /// Brings the picture up to date, in memory; returns where it has changed.
    std::vector<Rect> paint(double now);
    void draw(double now);

    double scale_;
    double drawEvery_;
    Scene scene_;
    HostLink host_;
    Editor editor_;
    PointerInput pointer_;
    KeyInput keys_;
    std::unique_ptr<PluginWindow> window_;
    Levels touched_;  // As they were when the meters were last told to be drawn.
    double lightIn_ = 0.0;
    double lightOut_ = 0.0;
    double lastDrawn_ = -1.0;
    bool isPainted_ = false;   // Ever.
    bool isUncovered_ = true;  // What was in the window is lost.
};

}  // namespace orvalo::effect::ui
