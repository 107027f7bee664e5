#pragma once

#include <memory>
#include <string>

#include "tests/Audio Engine/PlayerFixture.h"

namespace orvalo::testing {

/// A manager around the player of PlayerFixture, with one folder of effects on the search path.
class ManagerFixture : public PlayerFixture {
  protected:
    explicit ManagerFixture(const char* effectsPath);
    ~ManagerFixture() override;

    /// Makes the manager, which starts to search, and waits until all that follows has ended.
    void makeManager();

    std::shared_ptr<AUExtensionManager> manager;
};

/// The line with which every search starts.
extern const std::string kNote;

/// The lines that name this process and the effect, with that text of its flags.
Lines report(const std::string& flags = "0x00000002");

}  // namespace orvalo::testing
