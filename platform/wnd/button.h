#pragma once
// CPButton: a picture button. It holds four picture numbers, for the states 0 (normal), 1 and 2
// (pressed, by the user and by the program) and 3 (disabled), its rectangle in its window's
// content and its current state; it draws on the current drawing port.

#include "platform/base/types.h"

constexpr int kButtonNormal = 0;
constexpr int kButtonPressed = 1;
constexpr int kButtonHeld = 2;
constexpr int kButtonDisabled = 3;
constexpr int kButtonStateCount = 4;

class CPButton {
public:
    // The pictures of the states: normal, pressed (state 1), disabled (state 3) and held
    // (state 2; the pressed picture when 0). 0 is no picture: that state draws nothing.
    CPButton(int normal = 0, int pressed = 0, int disabled = 0, int held = 0);

    // Records the state; states 0-3 draw their picture in the rectangle when it has one. Any
    // other state (the program uses -1) is recorded without drawing.
    void SetState(int state);
    // False when the button is disabled (state 3) or (x, y) lies outside the rectangle, edges
    // included in the rectangle; otherwise SetState(state) and true.
    bool Check(int x, int y, int state);
    // Moves the button and draws it in its current state.
    void SetPos(const tagRECT& rect);

    int GetState() const { return state; }
    const tagRECT& GetRect() const { return rect; }
    int GetPicture(int state) const;
    void SetPicture(int state, int picture);

private:
    int pictures[kButtonStateCount];
    tagRECT rect;
    int state;
};
