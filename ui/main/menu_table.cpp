#include "ui/main/menu_table.h"

#include "platform/ini/settings.h"
#include "platform/wnd/cpmenu.h"
#include "ui/commands/recent_shows.h"

namespace {

int Check(bool on) { return on ? kMenuItemChecked : 0; }

int Setting(const char* key, long defaultValue)
{
    return static_cast<int>(GetIniItem(key, defaultValue));
}

void AddFileMenu(std::vector<MenuLine>& lines, const MenuVariant& variant)
{
    lines.push_back({kMenuTitle, "File", 0});
    if (!variant.getImageFromTimeline) {
        lines.push_back({1010, "Load Picture/E", 0});
        if (variant.slatewhirl)
            lines.push_back({1011, "Load Picture and Jump/~", 0});
        lines.push_back({kMenuSeparator, nullptr, 0});
    }
    lines.push_back({2005, "New Show/N", 0});
    lines.push_back({2004, "Load Show/O", 0});
    // Our addition: the last shows opened or saved, listed under one item.
    lines.push_back({kCmdRecentShows, "Recent Shows", 0});
    lines.push_back({2003, "Save Show/S", 0});
    lines.push_back({kMenuSeparator, nullptr, 0});
    if (!variant.standalone) {
        lines.push_back({kCmdExit, "Apply Moves and Close/Q", 0});
        lines.push_back({kCmdQuitNoApply, "Quit - DON'T Apply changes", 0});
        return;
    }
    lines.push_back({1013, "Make Movie File/K", 0});
    lines.push_back({1014, "Batch Render Movies", 0});
    lines.push_back({1037, "Make Still Image/T", 0});
    lines.push_back({kMenuSeparator, nullptr, 0});
    if (!variant.slatewhirl) {
        int rate = Setting("FrameRate", 2997);
        lines.push_back({1015, "NTSC", Check(rate == 2997)});
        lines.push_back({1016, "PAL", Check(rate == 2500)});
        lines.push_back({1017, "Film", Check(rate == 2397)});
        lines.push_back({kMenuSeparator, nullptr, 0});
    }
    lines.push_back({kCmdExit, "Exit/Q", 0});
}

void AddEditMenu(std::vector<MenuLine>& lines)
{
    lines.push_back({kMenuTitle, "Edit", 0});
    lines.push_back({kCmdUndo, "Undo/Z", kMenuItemDisabled});
    lines.push_back({kCmdRedo, "Redo/Y", kMenuItemDisabled});
    lines.push_back({kMenuSeparator, nullptr, 0});
    lines.push_back({kCmdCut, "Cut/X", kMenuItemDisabled});
    lines.push_back({kCmdCopy, "Copy/C", kMenuItemDisabled});
    lines.push_back({kCmdPaste, "Paste/V", kMenuItemDisabled});
    lines.push_back({kCmdDelete, "Delete", kMenuItemDisabled});
    lines.push_back({kMenuSeparator, nullptr, 0});
    lines.push_back({1023, "Delete Picture", 0});
    lines.push_back({1024, "Delete All Keys", 0});
    lines.push_back({1022, "Uniform Speed", 0});
    lines.push_back({1025, "Prep Picture", 0});
}

void AddOptionsMenu(std::vector<MenuLine>& lines, const MenuVariant& variant)
{
    lines.push_back({kMenuTitle, "Options", 0});
    lines.push_back({1000, "Show Camera Path", Check(Setting("ShowCameraPath", 0) != 0)});
    if (variant.slatewhirl) {
        lines.push_back({1008, "Set Viewer Aspect Ratio", 0});
    } else {
        // Read with default 1 here while the document reads it with default 0: on a first start
        // the item shows checked while the document's flag is off, until the user toggles it.
        lines.push_back({1002, "Auto-Rescale Show", Check(Setting("RescaleShow", 1) != 0)});
    }
    lines.push_back({kMenuSeparator, nullptr, 0});
    int ease = Setting("EaseType", 0);
    lines.push_back({1003, "Slow-in & Slow Out", Check((ease & 15) == 0)});
    lines.push_back({1004, "Slow-in", Check((ease & 15) == 1)});
    lines.push_back({1005, "Slow-out", Check((ease & 15) == 2)});
    lines.push_back({1006, "No Slows", Check((ease & 15) == 3)});
    lines.push_back({kMenuSeparator, nullptr, 0});
    // The show's ease keeps "no curves" in bit 4 alone; the other high bits mean nothing.
    lines.push_back({1007, "No Curves", Check((ease & 16) != 0)});
}

void AddRenderMenu(std::vector<MenuLine>& lines, const MenuVariant& variant)
{
    lines.push_back({kMenuTitle, "Render", 0});
    int aspect = Setting("AspectMode", 7500);
    lines.push_back({1030, "4:3 Aspect Ratio", Check(aspect == 7500)});
    lines.push_back({1031, "16:9 Aspect Ratio", Check(aspect == 5625)});
    lines.push_back({1032, "LetterBox 16:9", Check(aspect == 5626)});
    lines.push_back({kMenuSeparator, nullptr, 0});
    lines.push_back({1033, "Draft quality", Check(Setting("DraftRender", 0) != 0)});
    lines.push_back({1035, "Add Motion Blur", Check(Setting("BlurFrames", 0) != 0)});
    if (variant.canMultiProcess)
        lines.push_back({1034, "Multiple Processors", Check(Setting("MultiProcess", 0) != 0)});
    lines.push_back({kMenuSeparator, nullptr, 0});
    lines.push_back({1036, "Advanced Options", 0});
}

void AddViewMenu(std::vector<MenuLine>& lines, const MenuVariant& variant)
{
    lines.push_back({kMenuTitle, "View", 0});
    lines.push_back({1041, "Center Pic on Stage", Check(Setting("CenterPic", 0) != 0)});
    if (!variant.slatewhirl)
        lines.push_back({1040, "Show TV Safe Area", Check(Setting("ShowTVSafe", 0) != 0)});
    lines.push_back({kMenuSeparator, nullptr, 0});
    lines.push_back({1042, "Stage Zoom In", 0});
    lines.push_back({1043, "Stage Zoom Out", 0});
    lines.push_back({kMenuSeparator, nullptr, 0});
    lines.push_back({1044, "Enlarge Timeline/>", 0});
    lines.push_back({1045, "Contract Timeline/<", 0});
}

void AddHelpMenu(std::vector<MenuLine>& lines, const MenuVariant& variant)
{
    lines.push_back({kMenuTitle, "Help", 0});
    if (variant.hasHelpFile)
        lines.push_back({1020, "Contents", 0});
    lines.push_back({1026, "About", 0});
}

}  // namespace

std::vector<MenuLine> MainMenuLines(const MenuVariant& variant)
{
    std::vector<MenuLine> lines;
    AddFileMenu(lines, variant);
    AddEditMenu(lines);
    AddOptionsMenu(lines, variant);
    if (!variant.slatewhirl)
        AddRenderMenu(lines, variant);
    AddViewMenu(lines, variant);
    AddHelpMenu(lines, variant);
    return lines;
}
