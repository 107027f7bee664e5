#pragma once

#include <memory>

namespace orvalo {

/// The base of the reference types. Owned by std::shared_ptr; a null pointer is an absent object.
class NSObject : public std::enable_shared_from_this<NSObject> {
  public:
    NSObject(const NSObject&) = delete;
    NSObject& operator=(const NSObject&) = delete;
    NSObject(NSObject&&) = delete;
    NSObject& operator=(NSObject&&) = delete;
    virtual ~NSObject() = default;

  protected:
    NSObject() = default;

    /// A strong reference to this object as its own class. Not in constructors.
    template <typename Self>
    std::shared_ptr<Self> shared(Self* self) {
        return {shared_from_this(), self};
    }

    /// A weak reference to this object as its own class. Not in constructors.
    template <typename Self>
    std::weak_ptr<Self> weak(Self* self) {
        return shared(self);
    }
};

}  // namespace orvalo
