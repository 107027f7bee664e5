#pragma once

#include <memory>
#include <string>
#include <vector>

#include "effect/ui/HostLink.h"
#include "effect/ui/PluginWindow.h"
#include "effect/ui/PresetFiles.h"
#include "effect/ui/model/Editor.h"
#include "effect/ui/model/KeyInput.h"
#include "effect/ui/model/PointerInput.h"
#include "effect/ui/model/Scene.h"
#include "effect/ui/model/Tip.h"

namespace orvalo::effect::ui {

/// One UI of one instance of the effect. Everything runs on the host's UI thread.
class PluginUI {
  public:
    /// Null, with a line on standard error, if the UI cannot be shown. bundle: path of the bundle.
    static std::unique_ptr<PluginUI> open(const std::string& bundle, LV2UI_Write_Function write,
                                          LV2UI_Controller controller,
                                          const LV2_Feature* const* features);

    /// Ends a drag and the notes that are played.
    ~PluginUI();
    PluginUI(const PluginUI&) = delete;
    PluginUI& operator=(const PluginUI&) = delete;

    Window window() const { return window_->id(); }

    /// Takes a port's value as a plain float, or the effect's spectrum. Ignores anything else.
    void portEvent(std::uint32_t port, std::uint32_t size, std::uint32_t format,
                   const void* buffer);

    /// Handles events and draws what has changed. Returns true when the window is closed.
    bool idle();

    /// Requests a window size, in pixels.
    void resize(int width, int height);

  private:
    PluginUI(const Features& features, const std::string& bundle, LV2UI_Write_Function write,
             LV2UI_Controller controller, std::unique_ptr<PluginWindow> window);

    void readReading(Reading reading, float value);
    void handle(const XEvent& event);
    void handleButton(const XButtonEvent& button);
    void handleKey(const XKeyEvent& key);
    void adoptSize();
    void advanceTime(double now);
    void checkPresets(double now);
    void advanceLevels(double now);
    void requestSpectrum(double now);
    void markSpectrumChanged();
    void markLevelsChanged();
    void markHistoryChanged();
    /// Updates the picture in memory. Returns the changed areas.
    std::vector<Rect> paint(double now);
    void draw(double now);

    double scale_;
    double drawEvery_;  // The shortest time between two drawings, in seconds.
    Scene scene_;
    HostLink host_;
    PresetFiles store_;
    Editor editor_;
    PointerInput pointer_;
    KeyInput keys_;
    std::unique_ptr<PluginWindow> window_;
    Levels receivedLevels_;
    float receivedTruePeak_ = Levels::lowest;
    RunWatch runs_;
    TipTimer tip_;
    Levels drawnLevels_;     // The levels when the meters were last marked as changed.
    double levelsAt_ = 0.0;  // When the levels were last advanced.
    double lightIn_ = 0.0;
    double lightOut_ = 0.0;
    double beatLight_ = 0.0;
    double lastDrawn_ = -1.0;
    double presetsChecked_ = -1.0;
    double spectrumRequested_ = -1.0;
    bool isPainted_ = false;   // Whether paint() was ever called.
    bool isUncovered_ = true;  // The window's contents must be copied again.
};

}  // namespace orvalo::effect::ui
