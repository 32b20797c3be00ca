// CPGetColor: running the colour picker. Its parts and their edits are in color_picker.cpp, its
// drawing in color_picker_draw.cpp.

#include "platform/dialog/get_color.h"

#include "platform/dialog/modal_panel.h"
#include "platform/wnd/cpwnd.h"

namespace {

bool IsLevelOrTexture(PickerPart part)
{
    return part == PickerPart::kHue || part == PickerPart::kLuminance ||
           part == PickerPart::kSaturation || part == PickerPart::kTexture;
}

// The colour picker's part of the modal loop: its parts, its level drags and its drawing.
class PickerClient final : public PanelClient {
public:
    explicit PickerClient(ColorPicker* picker) : picker(picker) {}

    PanelEnd Press(tagPOINT at, bool* dragStarted) override
    {
        PickerPart part = HitTestPicker(*picker, at.x, at.y);
        if (part == PickerPart::kOutside || part == PickerPart::kCancel)
            return PanelEnd::kCancel;
        if (part == PickerPart::kOk)
            return PanelEnd::kConfirm;
        if (part == PickerPart::kPreviousTexture) {
            StepPickerTexture(picker, -1);
        } else if (part == PickerPart::kNextTexture) {
            StepPickerTexture(picker, 1);
        } else if (IsLevelOrTexture(part)) {
            DragPicker(picker, part, at.x, at.y);
            dragged = part;
            *dragStarted = true;
        }
        return PanelEnd::kRunning;
    }

    void Drag(tagPOINT at) override { DragPicker(picker, dragged, at.x, at.y); }

    void Draw() override { DrawGetColor(*picker); }

private:
    ColorPicker* picker;
    PickerPart dragged = PickerPart::kNothing;  // the part following the pointer
};

}  // namespace

bool CPGetColor(CPWnd* owner, int x, int y, long* colour, const char* title)
{
    if (!owner || !owner->IsCreated() || !colour)
        return false;
    ColorPicker picker;
    OpenColorPicker(&picker, x, y, *colour, title);
    ModalPanel panel(owner, PickerFrame(picker));
    PickerClient client(&picker);
    if (RunModalPanel(panel, client) != PanelEnd::kConfirm)
        return false;
    *colour = picker.colour;
    return true;
}
