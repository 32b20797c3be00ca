// CPDialog: running a described dialog. Drawing is in dialog_draw.cpp, the geometry and the
// meaning of a click in dialog_layout.cpp; this file reads the input and edits the value rows.

#include "platform/dialog/cpdialog.h"

#include <climits>
#include <cstdio>
#include <cstring>
#include <vector>

#include "platform/dialog/dialog_layout.h"
#include "platform/dialog/get_color.h"
#include "platform/dialog/modal_panel.h"
#include "platform/dialog/string_box.h"
#include "platform/file/file_dialog.h"
#include "platform/file/paths.h"
#include "platform/util/text.h"
#include "platform/wnd/cpwnd.h"

namespace {

constexpr const char* kAllFiles = "All Files (*.*)|*.*||";
constexpr const char* kFolderExtension = ".bmp";
constexpr const char* kColourTitle = "Choose Color";

struct DialogRun {
    CPWnd* owner;
    int x;
    int y;
    int count;
    const char* descriptions;
    char* values;
    const char* title;
    bool apply;
    DialogLayout layout;  // measured once: the rows do not change while the dialog runs
};

void ToggleCheck(const DialogRun& run, int row)
{
    SetDialogValue(run.values, row, IsDialogValueOn(run.values, row) ? "" : "1");
}

// A radio click clears every radio row of the dialog, whatever its group, and sets its own.
void SetRadio(const DialogRun& run, int row)
{
    for (int i = 0; i < run.count; ++i) {
        DialogRow other;
        ReadDialogRow(run.descriptions, i, &other);
        if (other.kind == DialogItem::kRadio)
            SetDialogValue(run.values, i, "");
    }
    SetDialogValue(run.values, row, "1");
}

void SetSlider(const DialogRun& run, int row, int clickX)
{
    char text[16];
    std::snprintf(text, sizeof text, "%d", DialogSliderValueAt(run.layout, row, clickX));
    SetDialogValue(run.values, row, text);
}

void ChooseColour(const DialogRun& run, int row)
{
    long colour = GetDialogNumber(run.values, row);
    if (!CPGetColor(run.owner, run.layout.x, run.layout.y, &colour, kColourTitle))
        return;
    char text[32];
    std::snprintf(text, sizeof text, "%ld", colour);
    SetDialogValue(run.values, row, text);
}

// The file dialog starts in the folder the row names; the chosen file's folder, its separator
// kept, becomes the value.
void ChooseFolder(const DialogRun& run, int row)
{
    char current[kDialogRowSize];
    GetDialogValue(run.values, row, current);
    FSpec start = PathFSpec(current);
    FSpec chosen{};
    if (!OpenFileDialog(run.owner, &chosen, kAllFiles, kFolderExtension,
                        current[0] ? &start : nullptr, false))
        return;
    char path[kMaxPathLength + 1];
    if (!GetFSpecPath(&chosen, path))
        return;
    StripFileName(path);
    SetDialogValue(run.values, row, path);
}

void AskValue(const DialogRun& run, int row, const DialogRow& item)
{
    char value[kDialogRowSize];
    GetDialogValue(run.values, row, value);
    char prompt[kDialogTextSize];
    std::snprintf(prompt, sizeof prompt, "Type New Value for %s", item.text);
    char note[kDialogTextSize];
    std::snprintf(note, sizeof note, " ( was: %s )", value);
    char answer[kDialogTextSize];
    std::strcpy(answer, value);
    if (GetStringBox(answer, run.title, prompt, note))
        SetDialogValue(run.values, row, answer);
}

// A button-down on row `row` right of the labels. Answers the row a slider drag has begun on,
// or -1.
int ClickItem(const DialogRun& run, int row, int clickX)
{
    DialogRow item;
    ReadDialogRow(run.descriptions, row, &item);
    switch (item.kind) {
    case DialogItem::kCheck:
        ToggleCheck(run, row);
        break;
    case DialogItem::kRadio:
        SetRadio(run, row);
        break;
    case DialogItem::kSlider:
        SetSlider(run, row, clickX);
        return row;
    case DialogItem::kColour:
        ChooseColour(run, row);
        break;
    case DialogItem::kFolder:
        ChooseFolder(run, row);
        break;
    case DialogItem::kField:
        AskValue(run, row, item);
        break;
    }
    return -1;
}

// The described dialog's part of the modal loop: its hits, its slider drags and its drawing.
class DialogClient final : public PanelClient {
public:
    explicit DialogClient(const DialogRun& run) : run(run) {}

    PanelEnd Press(tagPOINT at, bool* dragStarted) override
    {
        DialogHit hit = HitTestDialog(run.layout, at.x, at.y);
        switch (hit.kind) {
        case DialogHitKind::kOutside:
        case DialogHitKind::kCancel:
            return PanelEnd::kCancel;
        case DialogHitKind::kOk:
            return PanelEnd::kConfirm;
        case DialogHitKind::kApply:
            return PanelEnd::kApply;
        case DialogHitKind::kItem:
            sliderRow = ClickItem(run, hit.row, at.x);
            *dragStarted = sliderRow >= 0;
            break;
        case DialogHitKind::kNothing:
            break;
        }
        return PanelEnd::kRunning;
    }

    void Drag(tagPOINT at) override { SetSlider(run, sliderRow, at.x); }

    void Draw() override
    {
        CPDrawDialog(run.x, run.y, run.count, run.descriptions, run.values, run.title, run.apply);
    }

private:
    const DialogRun& run;
    int sliderRow = -1;  // the slider row following the pointer while the button is held
};

int ResultOf(PanelEnd end)
{
    if (end == PanelEnd::kConfirm)
        return kDialogConfirmed;
    return end == PanelEnd::kApply ? kDialogApplied : kDialogCancelled;
}

}  // namespace

int CPDialog(CPWnd* owner, int x, int y, int count, const char* descriptions, char* values,
             const char* title)
{
    if (!owner || !owner->IsCreated() || count == INT_MIN)
        return kDialogCancelled;
    DialogRun run{
        owner,     x, y, count < 0 ? -count : count, descriptions, values, title ? title : "",
        count < 0, {}};
    if (run.count > kMaxDialogRows || (run.count > 0 && (!descriptions || !values)))
        return kDialogCancelled;

    // The panel first: measuring selects the dialog font, and the caller's goes back at the end.
    ModalPanel panel(owner);
    run.layout = MakeDialogLayout(x, y, run.count, descriptions, run.apply);
    panel.Cover(run.layout.frame);
    DialogClient client(run);
    return ResultOf(RunModalPanel(panel, client));
}
