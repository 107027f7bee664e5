#include "effect/ui/model/KeyInput.h"

#include <algorithm>
#include <iterator>

#include "effect/ui/model/Control.h"
#include "effect/ui/model/ValueMapping.h"

namespace orvalo::effect::ui {

namespace {

bool isSpace(const Keystroke& key) {
    return key.key == Key::character && key.character == ' ';
}

/// The steps by which a key turns a knob; 0 for other keys.
int stepsOf(Key key) {
    switch (key) {
        case Key::up:
        case Key::right:
            return 1;
        case Key::down:
        case Key::left:
            return -1;
        case Key::pageUp:
            return KeyInput::pageSteps;
        case Key::pageDown:
            return -KeyInput::pageSteps;
        default:
            return 0;
    }
}

}  // namespace

bool KeyInput::press(const Keystroke& key) {
    editor_.setNotice({});
    if (scene_.entry) {
        return pressInEntry(key);
    }
    if (key.key == Key::undo || key.key == Key::redo) {
        key.key == Key::undo ? editor_.undo() : editor_.redo();
        return true;
    }
    if (scene_.list) {
        return pressInList(key);
    }
    if (key.key == Key::tab || key.key == Key::backTab) {
        return moveFocus(key.key == Key::tab ? 1 : -1);
    }
    if (editor_.notes().pressKey(key)) {
        return true;
    }
    // Without a visible focus the space bar belongs to the host, even after a click.
    if (isSpace(key) && !scene_.showsFocus) {
        return false;
    }
    const auto parameter = scene_.focusedControl();
    bool used = false;
    if (parameter) {
        used = pressOnControl(*parameter, key);
    } else {
        used = scene_.focus >= tabsFocus ? pressOnButton(key) : pressOnHeader(key);
    }
    if (used) {
        editor_.focus(scene_.focus, true);
    }
    return used;
}

bool KeyInput::moveFocus(int direction) {
    if (!scene_.showsFocus) {
        // The first press only makes the focus visible.
        editor_.focus(scene_.focus, true);
        return true;
    }
    const auto order = scene_.tabOrder();
    const auto at = std::ranges::find(order, scene_.focus);
    if (scene_.focus == (direction > 0 ? order.back() : order.front())) {
        // A host that has no own control to focus sends the next Tab here again.
        editor_.focus(direction > 0 ? order.front() : order.back(), false);
        return false;
    }
    editor_.focus(direction > 0 ? *std::next(at) : *std::prev(at), true);
    return true;
}

bool KeyInput::pressOnButton(const Keystroke& key) {
    const bool activates = key.key == Key::enter || isSpace(key);
    if (scene_.focus == metersFocus && activates) {
        editor_.resetMeters();
        return true;
    }
    const bool isNext = activates || key.key == Key::right || key.key == Key::up;
    if (isNext || key.key == Key::left || key.key == Key::down) {
        if (scene_.focus == historyFocus) {
            editor_.stepHistorySpan(isNext ? 1 : -1);
            return true;
        }
        if (scene_.focus == tabsFocus) {
            editor_.stepPage(isNext ? 1 : -1);
            return true;
        }
    }
    return false;
}

bool KeyInput::pressInEntry(const Keystroke& key) {
    auto& entry = scene_.entry->entry;
    switch (key.key) {
        case Key::enter:
            editor_.commitEntry();
            return true;
        case Key::tab:
        case Key::backTab:
            if (editor_.commitEntry()) {
                scene_.showsFocus = true;
                moveFocus(key.key == Key::tab ? 1 : -1);
            }
            return true;
        case Key::escape:
            editor_.cancelEntry();
            return true;
        case Key::character:
            entry.insert(key.character);
            break;
        case Key::backspace:
            entry.eraseBefore();
            break;
        case Key::erase:
            entry.eraseAfter();
            break;
        case Key::left:
            entry.moveBy(-1);
            break;
        case Key::right:
            entry.moveBy(1);
            break;
        case Key::home:
            entry.moveToStart();
            break;
        case Key::end:
            entry.moveToEnd();
            break;
        case Key::selectAll:
            entry.selectAll();
            break;
        default:
            return true;
    }
    editor_.entryChanged();
    return true;
}

bool KeyInput::pressInList(const Keystroke& key) {
    const std::size_t count = scene_.presets.presets().size();
    const std::size_t marked = *scene_.list;
    switch (key.key) {
        case Key::up:
            editor_.markEntry((marked + count - 1) % count);
            break;
        case Key::down:
            editor_.markEntry((marked + 1) % count);
            break;
        case Key::home:
            editor_.markEntry(0);
            break;
        case Key::end:
            editor_.markEntry(count - 1);
            break;
        case Key::pageUp:
            editor_.markEntry(marked - std::min(marked, std::size_t{pageSteps}));
            break;
        case Key::pageDown:
            editor_.markEntry(std::min(marked + pageSteps, count - 1));
            break;
        case Key::enter:
            editor_.closeList();
            editor_.choosePreset(marked);
            break;
        case Key::rename:
            editor_.beginRenaming(marked);
            break;
        case Key::erase:
            editor_.deletePreset(marked);
            break;
        case Key::escape:
        case Key::tab:
        case Key::backTab:
            editor_.closeList();
            break;
        default:
            if (isSpace(key)) {
                editor_.closeList();
                editor_.choosePreset(marked);
            }
            break;
    }
    return true;
}

bool KeyInput::pressOnHeader(const Keystroke& key) {
    const auto field = static_cast<Focus>(scene_.focus);
    if (key.key == Key::enter || isSpace(key)) {
        editor_.activate(field);
        return true;
    }
    if (field != Focus::presetName) {
        return false;
    }
    if (key.key == Key::down) {
        editor_.openList();
        return true;
    }
    if (key.key == Key::left || key.key == Key::right) {
        editor_.stepPreset(key.key == Key::left ? -1 : 1);
        return true;
    }
    return false;
}

bool KeyInput::pressOnControl(Parameter parameter, const Keystroke& key) {
    const Look look = lookOf(parameter);
    if (look != Look::knob && (key.key == Key::enter || isSpace(key))) {
        editor_.advance(parameter);
        return true;
    }
    if (parameter == Parameter::enabled) {
        return false;
    }
    if (const int steps = stepsOf(key.key); steps != 0) {
        editor_.turn(parameter, stepped(parameter, scene_.values[parameter], steps, key.fine));
        return true;
    }
    switch (key.key) {
        case Key::home:
            editor_.setOnce(parameter, range(parameter).minimum);
            return true;
        case Key::end:
            editor_.setOnce(parameter, range(parameter).maximum);
            return true;
        case Key::backspace:
        case Key::erase:
            editor_.setOnce(parameter, range(parameter).standard);
            return true;
        case Key::enter:
            editor_.beginEntry(parameter);
            return true;
        default:
            break;
    }
    if (look != Look::knob) {
        return false;
    }
    // A digit or sign starts typing a value.
    const char32_t c = key.character;
    if (key.key == Key::character && ((c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.')) {
        editor_.beginEntry(parameter);
        scene_.entry->entry.insert(c);
        return true;
    }
    return false;
}

}  // namespace orvalo::effect::ui
