#pragma once

#include <memory>
#include <string>

#include "tests/Audio Engine/PlayerFixture.h"

namespace orvalo::testing {

/// A manager with the player of PlayerFixture and one folder of effects on the search path.
class ManagerFixture : public PlayerFixture {
  protected:
    explicit ManagerFixture(const char* effectsPath);
    ~ManagerFixture() override;

    /// Creates the manager and waits until its search has ended.
    void makeManager();

    std::shared_ptr<AUExtensionManager> manager;
};

/// The first line of every search.
extern const std::string kNote;

/// The lines for this process and the effect with those flags.
Lines report(const std::string& flags = "0x00000002");

}  // namespace orvalo::testing
