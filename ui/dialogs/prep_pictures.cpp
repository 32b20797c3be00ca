#include "ui/dialogs/prep_pictures.h"

#include <cstdio>
#include <cstring>
#include <memory>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/dialog/cpdialog.h"
#include "platform/ini/settings.h"
#include "ui/dialogs/viewer_hidden.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/stage/cstage.h"
#include "ui/timeline/ctime.h"

namespace {

constexpr const char* kTitle = "Prep Pictures";
constexpr const char* kDescriptions[kPrepPicturesRows] = {
    "@CVideo Safe Color",           "@CPre-Blur",   "@SBorder Size %",
    "@LBorder/Tint Color",          "@SContrast",   "@SBrightness",
    "@RColor Mode|Normal / Border", "@RImage Tint", "@CIgnore Alpha Channel",
};
constexpr int kDialogX = 50;
constexpr int kDialogY = 50;

void SetNumber(char* values, int row, long number)
{
    char text[kDialogRowSize];
    std::snprintf(text, sizeof text, "%ld", number);
    SetDialogValue(values, row, text);
}

void SetCheck(char* values, int row, bool on) { SetDialogValue(values, row, on ? "1" : ""); }

}  // namespace

PrepValues PrepValuesOf(const CDoc& doc)
{
    PrepValues values;
    values.videoColors = doc.videoColors;
    values.preBlur = doc.preBlur;
    values.border = doc.border;
    values.matteColor = doc.matteColor;
    values.showWord = doc.showWord;
    values.ignoreAlpha = doc.ignoreAlpha;
    return values;
}

void SetPrepValues(CDoc& doc, const PrepValues& values)
{
    doc.videoColors = values.videoColors;
    doc.preBlur = values.preBlur;
    doc.border = values.border;
    doc.matteColor = values.matteColor;
    doc.showWord = values.showWord;
    doc.ignoreAlpha = values.ignoreAlpha;
}

PrepPicturesLists MakePrepPicturesDialog(const PrepValues& values)
{
    PrepPicturesLists lists;
    for (int row = 0; row < kPrepPicturesRows; ++row)
        SetDialogValue(lists.descriptions, row, kDescriptions[row]);
    SetCheck(lists.values, kPrepRowVideoSafe, values.videoColors);
    SetCheck(lists.values, kPrepRowPreBlur, values.preBlur != 0);
    SetNumber(lists.values, kPrepRowBorder, values.border);
    SetNumber(lists.values, kPrepRowColour, values.matteColor);
    SetNumber(lists.values, kPrepRowContrast, values.showWord & 0xFF);
    SetNumber(lists.values, kPrepRowBrightness, values.showWord >> 8);
    SetCheck(lists.values, kPrepRowBorderMode, values.border >= 0);
    SetCheck(lists.values, kPrepRowTint, values.border < 0);
    SetCheck(lists.values, kPrepRowIgnoreAlpha, values.ignoreAlpha);
    return lists;
}

PrepValues ReadPrepPicturesDialog(const PrepPicturesLists& lists)
{
    PrepValues values;
    values.videoColors = IsDialogValueOn(lists.values, kPrepRowVideoSafe);
    values.preBlur = IsDialogValueOn(lists.values, kPrepRowPreBlur) ? 1 : 0;
    values.ignoreAlpha = IsDialogValueOn(lists.values, kPrepRowIgnoreAlpha);
    // The border's text as the colour mode has it: "-1" for a tint, a minus sign made "0" for a
    // border, so "-20" reads 20.
    char border[kDialogRowSize * 2] = {};
    GetDialogValue(lists.values, kPrepRowBorder, border);
    bool tint = IsDialogValueOn(lists.values, kPrepRowTint) &&
                !IsDialogValueOn(lists.values, kPrepRowBorderMode);
    if (tint) {
        std::strcpy(border, "-1");
    } else if (char* minus = std::strchr(border, '-')) {
        *minus = '0';
    }
    values.border = static_cast<int>(GetDialogNumber(border, 0));
    values.matteColor = GetDialogNumber(lists.values, kPrepRowColour);
    long contrast = GetDialogNumber(lists.values, kPrepRowContrast);
    long brightness = GetDialogNumber(lists.values, kPrepRowBrightness);
    values.showWord = static_cast<uint16_t>((contrast & 255) | (brightness * 256));
    return values;
}

void ReloadPictures(CDoc& doc)
{
    // Loading a picture whose camera has fewer than two keys sets its first key afresh for the
    // picture's new size; the preparation must leave every camera as it was, so the keys are
    // put back afterwards.
    auto keys = std::make_unique<KeyStruct[]>(static_cast<size_t>(kPictureSlots) * kMaxKeys);
    std::memcpy(keys.get(), doc.keys, sizeof doc.keys);
    int keyCount[kPictureSlots];
    std::memcpy(keyCount, doc.keyCount, sizeof keyCount);
    for (int pic = 0; pic < doc.picCount; ++pic) {
        FSpec file = doc.picSpec[pic];
        doc.LoadPicture(&file, pic, doc.GetPicStart(pic));
    }
    std::memcpy(doc.keys, keys.get(), sizeof doc.keys);
    std::memcpy(doc.keyCount, keyCount, sizeof keyCount);
}

void CMain::ImagePrep()
{
    if (pDoc == nullptr)
        return;
    PrepValues before = PrepValuesOf(*pDoc);
    PrepPicturesLists lists = MakePrepPicturesDialog(before);
    int answer = RunDialogWithoutViewer(EditorDialogOwner(), kDialogX, kDialogY, kPrepPicturesRows,
                                        lists.descriptions, lists.values, kTitle);
    if (answer != kDialogConfirmed) {
        // Nothing was taken from the rows: every value is as it was, and nothing is loaded.
        SetPrepValues(*pDoc, before);
        return;
    }
    PrepValues chosen = ReadPrepPicturesDialog(lists);
    SetPrepValues(*pDoc, chosen);
    ReloadPictures(*pDoc);
    pDoc->GotoFrame(0, true);
    SetIniItem("VideoColors", chosen.videoColors ? 1L : 0L);
    SetIniItem("PreBlur", static_cast<long>(chosen.preBlur));
    SetIniItem("MatteColor", chosen.matteColor);
    SetIniItem("IgnoreAlpha", chosen.ignoreAlpha ? 1L : 0L);
    if (pStage != nullptr)
        pStage->Redraw();
    if (pTime != nullptr)
        pTime->Redraw();
    Redraw();
}
