#pragma once

namespace orvalo::effect::ui {

/// A colour as cairo takes it, each part from 0 to 1.
struct Colour {
    double red;
    double green;
    double blue;
    double alpha = 1.0;

    constexpr Colour withAlpha(double share) const { return {red, green, blue, alpha * share}; }
};

/// The interface's few colours: greys on a dark ground, one accent for what the effect does, and
/// one signal for what is wrong.
namespace theme {

inline constexpr Colour ground{0.071, 0.082, 0.094};
inline constexpr Colour panel{0.106, 0.122, 0.141};
inline constexpr Colour raised{0.157, 0.180, 0.208};
inline constexpr Colour raisedLight{0.208, 0.239, 0.275};
inline constexpr Colour line{0.180, 0.208, 0.239};
inline constexpr Colour track{0.212, 0.243, 0.278};
inline constexpr Colour text{0.886, 0.910, 0.929};
inline constexpr Colour dimText{0.596, 0.643, 0.690};
inline constexpr Colour level{0.435, 0.494, 0.553};
inline constexpr Colour accent{0.373, 0.788, 0.722};
inline constexpr Colour asleep{0.388, 0.431, 0.471};
inline constexpr Colour signal{0.937, 0.439, 0.373};

}  // namespace theme

}  // namespace orvalo::effect::ui
