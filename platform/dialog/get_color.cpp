// CPGetColor: running the colour picker. Its parts and their edits are in color_picker.cpp, its
// drawing in color_picker_draw.cpp.

#include "platform/dialog/get_color.h"

#include "platform/dialog/modal_panel.h"
#include "platform/wnd/cpwnd.h"
#include "platform/wnd/messages.h"

namespace {

void Draw(ModalPanel& panel, const ColorPicker& picker)
{
    panel.Select();
    DrawGetColor(picker);
}

bool IsLevelOrTexture(PickerPart part)
{
    return part == PickerPart::kHue || part == PickerPart::kLuminance ||
           part == PickerPart::kSaturation || part == PickerPart::kTexture;
}

}  // namespace

bool CPGetColor(CPWnd* owner, int x, int y, long* colour, const char* title)
{
    if (!owner || !owner->IsCreated() || !colour)
        return false;
    ColorPicker picker;
    OpenColorPicker(&picker, x, y, *colour, title);
    ModalPanel panel(owner, PickerFrame(picker));
    Draw(panel, picker);

    enum { kRunning, kChosen, kCancelled } state = kRunning;
    PickerPart dragging = PickerPart::kNothing;
    while (state == kRunning) {
        PanelInput input = panel.Read();
        switch (input.msg) {
        case kMsgKeyDown: {
            PanelKey key = ReadPanelKey(input);
            if (key == PanelKey::kCancel)
                state = kCancelled;
            else if (key == PanelKey::kConfirm)
                state = kChosen;
            break;
        }
        case kMsgButtonDown: {
            // A drag ends with its button; one whose release never came ends here.
            dragging = PickerPart::kNothing;
            if (input.window != owner) {
                state = kCancelled;
                break;
            }
            PickerPart part = HitTestPicker(picker, input.at.x, input.at.y);
            if (part == PickerPart::kOutside || part == PickerPart::kCancel)
                state = kCancelled;
            else if (part == PickerPart::kOk)
                state = kChosen;
            else if (part == PickerPart::kPreviousTexture)
                StepPickerTexture(&picker, -1);
            else if (part == PickerPart::kNextTexture)
                StepPickerTexture(&picker, 1);
            else if (IsLevelOrTexture(part)) {
                DragPicker(&picker, part, input.at.x, input.at.y);
                dragging = part;
            }
            break;
        }
        case kMsgMouseMoved:
            if (dragging != PickerPart::kNothing && input.window == owner)
                DragPicker(&picker, dragging, input.at.x, input.at.y);
            else
                panel.HandOn(input);
            break;
        case kMsgButtonUp:
            if (dragging != PickerPart::kNothing)
                dragging = PickerPart::kNothing;
            else
                panel.HandOn(input);
            break;
        default:
            panel.HandOn(input);
            break;
        }
        if (state == kRunning)
            Draw(panel, picker);
    }
    if (state == kChosen)
        *colour = picker.colour;
    return state == kChosen;
}
