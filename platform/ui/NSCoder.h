#pragma once

#include <memory>
#include <string>
#include <utility>

namespace orvalo {

class UIStoryboard;

/// Tells a new screen where to read its views from.
class NSCoder {
  public:
    NSCoder(std::shared_ptr<UIStoryboard> storyboard, std::string screen)
        : storyboard_(std::move(storyboard)), screen_(std::move(screen)) {}

    const std::shared_ptr<UIStoryboard>& storyboard() const { return storyboard_; }
    /// The screen's id in the layout: the name of its class.
    const std::string& screen() const { return screen_; }

  private:
    std::shared_ptr<UIStoryboard> storyboard_;
    std::string screen_;
};

}  // namespace orvalo
