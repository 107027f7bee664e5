#include "effect/ui/KeyReading.h"

#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <xkbcommon/xkbcommon.h>

namespace orvalo::effect::ui {

namespace {

std::optional<Key> namedKey(KeySym symbol) {
    switch (symbol) {
        case XK_Return:
        case XK_KP_Enter:
            return Key::enter;
        case XK_Escape:
            return Key::escape;
        case XK_Tab:
        case XK_KP_Tab:
            return Key::tab;
        case XK_ISO_Left_Tab:
            return Key::backTab;
        case XK_Left:
        case XK_KP_Left:
            return Key::left;
        case XK_Right:
        case XK_KP_Right:
            return Key::right;
        case XK_Up:
        case XK_KP_Up:
            return Key::up;
        case XK_Down:
        case XK_KP_Down:
            return Key::down;
        case XK_Page_Up:
        case XK_KP_Page_Up:
            return Key::pageUp;
        case XK_Page_Down:
        case XK_KP_Page_Down:
            return Key::pageDown;
        case XK_Home:
        case XK_KP_Home:
            return Key::home;
        case XK_End:
        case XK_KP_End:
            return Key::end;
        case XK_BackSpace:
            return Key::backspace;
        case XK_Delete:
        case XK_KP_Delete:
            return Key::erase;
        case XK_F2:
            return Key::rename;
        default:
            return std::nullopt;
    }
}

/// The printable character of a key; 0 for other keys.
char32_t characterOf(KeySym symbol) {
    const char32_t character = xkb_keysym_to_utf32(static_cast<xkb_keysym_t>(symbol));
    constexpr char32_t erase = 0x7F;
    return character < U' ' || character == erase ? 0 : character;
}

}  // namespace

bool asksForFine(unsigned int state) {
    return (state & (ShiftMask | ControlMask)) != 0;
}

std::optional<Keystroke> readKey(const XKeyEvent& event) {
    XKeyEvent copy = event;
    KeySym symbol = NoSymbol;
    XLookupString(&copy, nullptr, 0, &symbol, nullptr);
    const bool fine = asksForFine(event.state);
    if (const auto named = namedKey(symbol)) {
        const bool isBack = *named == Key::tab && (event.state & ShiftMask) != 0;
        return Keystroke{.key = isBack ? Key::backTab : *named,
                         .character = 0,
                         .fine = fine,
                         .code = event.keycode};
    }
    const bool control = (event.state & ControlMask) != 0;
    if (control && (symbol == XK_a || symbol == XK_A)) {
        return Keystroke{.key = Key::selectAll, .character = 0, .fine = false};
    }
    if (control && (symbol == XK_z || symbol == XK_Z)) {
        const bool isRedo = (event.state & ShiftMask) != 0;
        return Keystroke{.key = isRedo ? Key::redo : Key::undo, .character = 0, .fine = false};
    }
    // With Ctrl or Alt it is a command for the host.
    const bool isCommand = control || (event.state & Mod1Mask) != 0;
    const char32_t character = characterOf(symbol);
    if (character != 0 && !isCommand) {
        return Keystroke{
            .key = Key::character, .character = character, .fine = fine, .code = event.keycode};
    }
    return std::nullopt;
}

}  // namespace orvalo::effect::ui
