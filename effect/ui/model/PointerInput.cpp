#include "effect/ui/model/PointerInput.h"

#include <algorithm>
#include <cmath>

#include "effect/ui/model/Control.h"
#include "effect/ui/model/GraphAreas.h"

namespace orvalo::effect::ui {

using Kind = Target::Kind;

bool PointerInput::isSecondPress(const Target& target, const Pointer& pointer) const {
    const double reach = scene_.layout.unit;
    return pressedAt_ && target == pressed_ &&
           pointer.time - pressedAt_->time <= doubleClickSeconds &&
           std::abs(pointer.x - pressedAt_->x) <= reach &&
           std::abs(pointer.y - pressedAt_->y) <= reach;
}

void PointerInput::press(const Pointer& pointer) {
    editor_.setNotice({});
    const Target target = scene_.targetAt(pointer.x, pointer.y);
    const bool inEntry = scene_.entry && scene_.entryField().contains(pointer.x, pointer.y);
    if (inEntry) {
        scene_.entry->entry.moveToEnd();
        editor_.entryChanged();
        return;
    }
    // A press elsewhere commits a typed value, or discards it if it is invalid. It saves no preset.
    if (scene_.isNaming() || (scene_.entry && !editor_.commitEntry())) {
        editor_.cancelEntry();
    }
    switch (target.kind) {
        case Kind::control:
            pressControl(target, pointer);
            break;
        case Kind::value:
            editor_.focus(focusOf(target.parameter), false);
            if (isSecondPress(target, pointer)) {
                break;
            }
            editor_.beginEntry(target.parameter);
            break;
        case Kind::undo:
        case Kind::redo:
        case Kind::previousPreset:
        case Kind::presetName:
        case Kind::nextPreset:
        case Kind::savePreset:
        case Kind::sound:
        case Kind::copySound:
            pressField(target.kind);
            break;
        case Kind::presetEntry:
            editor_.closeList();
            editor_.choosePreset(target.entry);
            break;
        case Kind::renameEntry:
            editor_.beginRenaming(target.entry);
            break;
        case Kind::deleteEntry:
            editor_.deletePreset(target.entry);
            break;
        case Kind::presetScroll:
            editor_.scrollList(target.entry == 0 ? -1 : 1);
            break;
        case Kind::outsideList:
            editor_.closeList();
            break;
        case Kind::thresholdPoint:
        case Kind::ratioPoint:
            pressCurvePoint(target, pointer);
            break;
        case Kind::history:
            editor_.toggleHistoryPause();
            break;
        case Kind::historySpan:
            editor_.focus(historyFocus, false);
            editor_.stepHistorySpan(1);
            break;
        case Kind::meters:
            editor_.focus(metersFocus, false);
            editor_.resetMeters();
            break;
        case Kind::pad:
            editor_.focus(padFocus, false);
            pressPad(pointer);
            break;
        case Kind::tab:
            editor_.focus(tabsFocus, false);
            editor_.openPage(static_cast<Page>(target.entry));
            break;
        case Kind::graph:
        case Kind::noteKeys:
        case Kind::curve:
        case Kind::nothing:
            break;
    }
    pressed_ = target;
    pressedAt_ = pointer;
}

void PointerInput::pressField(Kind kind) {
    for (const auto& field : headerFields) {
        if (field.kind == kind) {
            editor_.focus(static_cast<std::size_t>(field.focus), false);
            editor_.activate(field.focus);
            return;
        }
    }
}

void PointerInput::pressControl(const Target& target, const Pointer& pointer) {
    const Parameter parameter = target.parameter;
    editor_.focus(focusOf(parameter), false);
    const Look look = lookOf(parameter);
    if (look == Look::segments && segmentAreas(scene_.layout, parameter).size() > 1) {
        editor_.setOnce(parameter, static_cast<float>(target.entry));
        return;
    }
    if (look != Look::knob) {
        editor_.advance(parameter);
        return;
    }
    editor_.hold(parameter);
    if (isSecondPress({.kind = Kind::control, .parameter = parameter}, pointer)) {
        editor_.set(parameter, range(parameter).standard);
    }
    drag_.emplace(parameter, scene_.values[parameter]);
    last_ = pointer;
}

void PointerInput::pressCurvePoint(const Target& target, const Pointer& pointer) {
    const auto parameter =
        target.kind == Kind::thresholdPoint ? Parameter::threshold : Parameter::ratio;
    editor_.focus(focusOf(parameter), false);
    editor_.hold(parameter);
    if (isSecondPress(target, pointer)) {
        editor_.set(parameter, range(parameter).standard);
    }
    curveDrag_.emplace(scene_, parameter, pointer);
    last_ = pointer;
}

void PointerInput::pressPad(const Pointer& pointer) {
    const Rect area = padAreas(scene_.layout).pad;
    editor_.notes().pressPad((area.bottom() - pointer.y) / std::max(1.0, area.height));
}

void PointerInput::leave() {
    if (!isDragging()) {
        editor_.hover({});
    }
}

void PointerInput::hoverOver(const Pointer& pointer) {
    const Target target = scene_.targetAt(pointer.x, pointer.y);
    editor_.hover(target);
    if (target.kind == Kind::presetEntry || target.kind == Kind::renameEntry ||
        target.kind == Kind::deleteEntry) {
        editor_.markEntry(target.entry);
    }
}

void PointerInput::move(const Pointer& pointer) {
    if (curveDrag_) {
        if (pointer.x != last_.x || pointer.y != last_.y) {
            editor_.set(curveDrag_->parameter(), curveDrag_->move(scene_, pointer));
            pressedAt_.reset();
        }
        last_ = pointer;
        return;
    }
    if (!drag_) {
        hoverOver(pointer);
        return;
    }
    const double up = (last_.y - pointer.y) + (pointer.x - last_.x);
    last_ = pointer;
    if (up != 0.0) {
        editor_.set(drag_->parameter(), drag_->move(up / scene_.layout.dragTravel, pointer.fine));
        // A drag does not start a double click.
        pressedAt_.reset();
    }
}

void PointerInput::release() {
    editor_.notes().releasePad();
    if (isDragging()) {
        drag_.reset();
        curveDrag_.reset();
        editor_.release();
        editor_.hover(scene_.targetAt(last_.x, last_.y));
    }
}

void PointerInput::wheel(const Pointer& pointer, int turns) {
    if (isDragging() || scene_.entry) {
        return;
    }
    if (scene_.list) {
        editor_.scrollList(turns > 0 ? -1 : 1);
        hoverOver(pointer);
        return;
    }
    const Target target = scene_.targetAt(pointer.x, pointer.y);
    const bool isControl = target.kind == Kind::control || target.kind == Kind::value;
    if (isControl && lookOf(target.parameter) == Look::toggle) {
        return;
    }
    if (isControl) {
        editor_.turn(target.parameter, stepped(target.parameter, scene_.values[target.parameter],
                                               turns, pointer.fine));
    } else if (target.kind == Kind::tab) {
        editor_.stepPage(turns > 0 ? -1 : 1);
    } else if (target.kind == Kind::presetName) {
        editor_.stepPreset(turns > 0 ? -1 : 1);
    } else if (target.kind == Kind::curve || target.kind == Kind::thresholdPoint ||
               target.kind == Kind::ratioPoint) {
        editor_.turn(Parameter::knee,
                     stepped(Parameter::knee, scene_.values[Parameter::knee], turns, pointer.fine));
    } else if (target.kind == Kind::history || target.kind == Kind::historySpan) {
        editor_.stepHistorySpan(turns > 0 ? -1 : 1);
    }
}

}  // namespace orvalo::effect::ui
