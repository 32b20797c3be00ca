#include "platform/wnd/button.h"

#include "platform/util/rect.h"
#include "platform/wnd/button_pictures.h"

CPButton::CPButton(int normal, int pressed, int disabled, int held)
    : pictures{normal, pressed, held ? held : pressed, disabled}, rect{0, 0, 0, 0},
      state(kButtonNormal)
{
}

int CPButton::GetPicture(int which) const
{
    return (which >= 0 && which < kButtonStateCount) ? pictures[which] : 0;
}

void CPButton::SetPicture(int which, int picture)
{
    if (which >= 0 && which < kButtonStateCount)
        pictures[which] = picture;
}

void CPButton::SetState(int newState)
{
    state = newState;
    if (state < 0 || state >= kButtonStateCount || pictures[state] == 0)
        return;
    DrawButtonPicture(rect, pictures[state]);
}

bool CPButton::Check(int x, int y, int newState)
{
    if (state == kButtonDisabled || !XYInRect(&rect, x, y))
        return false;
    SetState(newState);
    return true;
}

void CPButton::SetPos(const tagRECT& newRect)
{
    rect = newRect;
    SetState(state);
}
