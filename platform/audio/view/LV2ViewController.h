#pragma once

#include <memory>
#include <string>

#include "platform/audio/interface/LV2EmbeddedInterface.h"
#include "platform/audio/interface/LV2InterfaceData.h"
#include "platform/audio/interface/LV2InterfaceLibrary.h"
#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "platform/audio/view/AUViewController.h"
#include "platform/audio/view/X11ContainerView.h"

namespace orvalo {

/// The X11 interface of an LV2 unit. It is opened when its view comes on screen first, and from
/// then on lives as long as the view's window; one that has closed, or could not be opened, says so
/// in its place and is tried again when the view comes on screen anew. Main thread.
class LV2ViewController : public AUViewController {
  public:
    /// From now on requestViewController() of an LV2 unit gives one. Once, at the program's start,
    /// by a program whose toolkit uses X11.
    static void enable();

    /// The view controller of a unit; absent, with one line on standard error that names the
    /// plug-in and says why, when there is no interface that can be embedded here.
    static std::shared_ptr<LV2ViewController> make(const std::shared_ptr<LV2LocalAudioUnit>& unit);

    /// For make(): the data's library loads.
    LV2ViewController(std::shared_ptr<LV2LocalAudioUnit> unit, LV2InterfaceData data);
    ~LV2ViewController() override;

  private:
    void place(const X11ContainerView::Place& place);
    void open(const X11ContainerView::Place& place);
    void close();
    void closed(const std::string& reason);
    void takeRules();

    const std::shared_ptr<LV2LocalAudioUnit> unit_;
    const LV2InterfaceData data_;
    const LV2InterfaceLibrary library_;
    std::shared_ptr<X11ContainerView> container_;
    std::unique_ptr<LV2EmbeddedInterface> interface_;
    unsigned long toplevel_ = 0;  // That the interface is open in.
    int scaleFactor_ = 1;
    bool hasFailed_ = false;  // Since the view came on screen.
};

}  // namespace orvalo
