// The drawing gallery: one window showing every drawing primitive of the portable layer, the
// transport button pictures, a picture button, an edit box and a described dialog of every row
// kind, saved as a PNG picture so that the layer's drawing can be looked at on any machine.
//
//   px_gallery picture.png      (tools/gallery runs it on a virtual display)

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#include "platform/dialog/cpdialog.h"
#include "platform/draw/dib_draw.h"
#include "platform/draw/draw_shapes.h"
#include "platform/draw/draw_text.h"
#include "platform/draw/font.h"
#include "platform/draw/rubber.h"
#include "platform/wnd/application.h"
#include "platform/wnd/button.h"
#include "platform/wnd/button_pictures.h"
#include "platform/wnd/cpwnd.h"
#include "platform/wnd/edit_box.h"
#include "platform/wnd/shell.h"

namespace {

constexpr long kInk = 0x000000;
constexpr long kRed = 0x0000FF;
constexpr long kGreen = 0x00A000;
constexpr long kBlue = 0xFF0000;
constexpr long kYellow = 0x00E0FF;
constexpr long kFace = 0xC0C0C0;

// Rows of the described dialog, one of each kind.
const char* const kRows[] = {
    "Width",        "@CLoop the show", "@CTitle safe", "@RFields|Upper first", "@RLower first",
    "@RSpeed|Slow", "@RFast",          "@SQuality",    "@LBorder colour",      "@FTexture folder"};
const char* const kValues[] = {"640", "0", "",   "1",        "",
                               "",    "1", "75", "16711680", "/usr/share/pixmaps/textures/"};
constexpr int kRowCount = sizeof kRows / sizeof kRows[0];

void Caption(const char* text, int x, int y)
{
    SelectFont(Sans10, -1, 0);
    DrawText(kInk, text, x, y, kTextLeft);
}

void DrawOutlines(int top)
{
    Caption("DrawBox 1 and 3, DrawLine 1 and 3, DrawRoundBox, DrawCir, DrawSplitBox", 10, top);
    top += 18;
    DrawBox(kInk, {10, top, 60, top + 40}, 1);
    DrawBox(kRed, {70, top, 120, top + 40}, 3);
    DrawLine(kBlue, 130, top, 180, top + 40, 1);
    DrawLine(kGreen, 190, top + 20, 240, top + 20, 3);
    DrawRoundBox(kInk, {250, top, 310, top + 40}, 12, 2);
    DrawCir(kRed, {320, top, 380, top + 40}, 1);
    DrawSplitBox(0xFFFFFF, 0x404040, {390, top, 440, top + 40}, 2);
    tagPOINT zigzag[] = {{450, top + 40}, {470, top}, {490, top + 40}, {510, top}};
    DrawPolyLine(kBlue, 2, 4, zigzag);
}

void DrawFills(int top)
{
    Caption("DrawBar, DrawRoundBar, DrawCirBar, DrawPolygon, DrawTriangle x 3", 10, top);
    top += 18;
    DrawBar(kYellow, {10, top, 60, top + 40});
    DrawRoundBar(kGreen, {70, top, 130, top + 40}, 16);
    DrawCirBar(kBlue, {140, top, 200, top + 40});
    tagPOINT star[] = {
        {235, top}, {245, top + 28}, {215, top + 12}, {255, top + 12}, {225, top + 28}};
    DrawPolygon(kRed, kInk, 5, star);
    DrawTriangle(kYellow, 270, top + 40, 300, top, 330, top + 40, kInk);
    DrawTriangle(kGreen, tagPOINT{340, top}, tagPOINT{380, top}, tagPOINT{360, top + 40});
    for (int direction = 0; direction < 4; ++direction)
        DrawTriangle(kInk, 400 + 30 * direction, top + 20, 10, direction);
}

void DrawControls(int top, CPButton& button)
{
    Caption("DrawCheck, DrawRadio, DrawSlider, button pictures, CPButton", 10, top);
    top += 18;
    DrawCheck(0xFFFFFF, {10, top, 22, top + 12}, false);
    DrawCheck(0xFFFFFF, {30, top, 42, top + 12}, true);
    DrawRadio(kInk, {50, top, 63, top + 13}, false);
    DrawRadio(kInk, {70, top, 83, top + 13}, true);
    SelectFont(Sans8, -1, 0);
    DrawSlider(kFace, 0x606060, {100, top, 260, top + 14}, 40, 100, true);
    for (int picture = kFirstButtonPicture; picture <= kLastButtonPicture; ++picture) {
        int x = 280 + (picture - kFirstButtonPicture) * 26;
        DrawButtonPicture({x, top - 4, x + 24, top + 18}, picture);
    }
    button.SetPos({10, top + 24, 40, top + 48});
    button.SetState(kButtonPressed);
}

void DrawTexts(int top)
{
    Caption("DrawText: Sans8, Sans10, Sans12, Sans14B, Sans20; left, centred, right", 10, top);
    top += 20;
    FontRecord* fonts[] = {Sans8, Sans10, Sans12, Sans14B, Sans20};
    int x = 10;
    for (FontRecord* font : fonts) {
        SelectFont(font, -1, 0);
        DrawText(kInk, "Camera", x, top, kTextLeft);
        x += static_cast<int>(GetTextWidth("Camera")) + 12;
    }
    SelectFont(Sans12, 0x00FFFF, -1);
    DrawLine(kRed, 120, top + 30, 120, top + 50, 1);
    DrawText(kBlue, "centred on the line", 120, top + 32, kTextCentre);
    DrawLine(kRed, 420, top + 30, 420, top + 50, 1);
    SelectFont(Sans12, -1, 0);
    DrawText(kGreen, "ends at the line", 420, top + 32, kTextRight);
}

void DrawRubberAndPictures(int top)
{
    Caption("RubberBox, RubberLine, RubberCir, RubberPolygon over a DIBDraw gradient", 10, top);
    top += 18;
    // A 64 x 32 24-bit picture, bottom row first, scaled up three times.
    constexpr int kWidth = 64;
    constexpr int kHeight = 32;
    constexpr int kRowBytes = kWidth * 3;
    std::vector<unsigned char> rows(kRowBytes * kHeight);
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            unsigned char* pixel = &rows[size_t(y) * kRowBytes + size_t(x) * 3];
            pixel[0] = static_cast<unsigned char>(x * 4);        // blue
            pixel[1] = static_cast<unsigned char>(y * 8);        // green
            pixel[2] = static_cast<unsigned char>(255 - x * 4);  // red
        }
    }
    tagRECT dest = {10, top, 10 + 3 * kWidth, top + 3 * kHeight};
    DIBDraw(dest, {0, 0, kWidth - 1, kHeight - 1}, rows.data(), kWidth, kHeight, kRowBytes, 24);
    RubberBox({20, top + 10, 120, top + 80}, 1);
    RubberLine({30, top + 85, 190, top + 15}, 2);
    RubberCir({110, top + 20, 180, top + 70}, 1);
    tagPOINT corners[] = {{220, top}, {300, top + 20}, {280, top + 90}, {210, top + 70}};
    RubberPolygon(4, corners, 1);
}

class GalleryWindow : public CPWnd {
public:
    void OnDraw() override
    {
        tagRECT all;
        GetClientRect(all);
        DrawBar(0xF0F0F0, all);
        DrawOutlines(8);
        DrawFills(80);
        DrawControls(152, button);
        DrawTexts(224);
        DrawRubberAndPictures(312);
        SelectFont(Sans10, -1, 0);
        DrawText(kInk, "CPDrawDialog, every row kind:", 540, 8, kTextLeft);
        CPDrawDialog(540, 24, kRowCount, rows.data(), values.data(), "Render Options", true);
    }

    CPButton button{108, 103, 104};  // play forwards: normal, pressed, disabled
    std::vector<char> rows = std::vector<char>(kRowCount * kDialogRowSize, 0);
    std::vector<char> values = std::vector<char>(kRowCount * kDialogRowSize, 0);
};

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: px_gallery picture.png\n");
        return 2;
    }
    if (!StartApplication(argc, argv)) {
        std::fprintf(stderr, "px_gallery: no display to open a window on (try tools/gallery)\n");
        return 1;
    }
    InitEnvironment(nullptr, "Parallaxotron", 101);
    {
        GalleryWindow window;
        for (int i = 0; i < kRowCount; ++i) {
            std::strncpy(&window.rows[size_t(i) * kDialogRowSize], kRows[i], kDialogRowText);
            std::strncpy(&window.values[size_t(i) * kDialogRowSize], kValues[i], kDialogRowText);
        }
        window.Create(nullptr, 0);
        window.SetTitle("Parallaxotron drawing gallery");
        window.SetWinRect(40, 40, 40 + 960, 40 + 440, true);
        CPEditBox edit;
        edit.Create(&window, 60, 196, 160, 22, Sans12);
        edit.SetString("an edit box", false);
        ProcessPendingEvents(500);
        bool saved = SaveWindowPicture(&window, argv[1]);
        edit.Remove();
        window.Destroy();
        CloseEnvironment();
        if (!saved) {
            std::fprintf(stderr, "px_gallery: could not write %s\n", argv[1]);
            StopApplication();
            return 1;
        }
    }
    StopApplication();
    std::printf("%s\n", argv[1]);
    return 0;
}
