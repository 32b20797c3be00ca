// The add-key command: the camera being edited becomes a key of the picture on screen.

#include <algorithm>
#include <cstdlib>

#include "doc/cdoc.h"
#include "doc/editor_link.h"
#include "doc/globals.h"

namespace {

// Timeline scales below this many frames per step widen the search for an existing key.
constexpr int kFineTimelineScale = 8;
constexpr long kKeyTolerance = 4;
// A picture takes at most this many keys through the command; the last slot stays free.
constexpr int kMostKeysBeforeAdding = 62;

}  // namespace

bool CDoc::AddKey()
{
    gCurFrame = std::min(showLength - 1, gCurFrame);
    int pic = FindCurPic(gCurFrame);
    long relative = gCurFrame - GetPicStart(pic);

    int scale = editor != nullptr ? editor->GetTimelineScale() : kFineTimelineScale;
    long tolerance = scale < kFineTimelineScale ? scale / 2 : kKeyTolerance;
    int index = keyCount[pic];
    for (int key = 0; key < keyCount[pic]; ++key) {
        if (std::labs(keys[pic][key].Frame - relative) < tolerance) {
            index = key;
            break;
        }
    }
    bool newKey = index == keyCount[pic];
    if (newKey && keyCount[pic] > kMostKeysBeforeAdding)
        return false;
    if ((!autoAddKey || newKey) && editor != nullptr)
        editor->Beep();

    KeyStruct key = editor != nullptr ? editor->GetCurrentKey() : currentCamera;
    key.Frame = index == 0 ? 0 : static_cast<int32_t>(relative);
    key.PicStart = keys[pic][0].PicStart;
    if (index == 0) {
        // Key 0 also holds the picture's timing: its dissolve and the saved show length stay.
        key.TransLen = keys[pic][0].TransLen;
        key.ShowLen = keys[pic][0].ShowLen;
    }
    key.Reserved[1] = 0;
    if (newKey) {
        key.Ease = 0.0f;
        key.TransLen = 0.0f;
    }
    // The undo entry is taken before the key is written: a replaced key comes back as it was,
    // a new one is deleted again.
    if (newKey)
        Do(key, kUndoRedelete, pic);
    else
        Do(keys[pic][index], index, pic);
    SetKey(index, key, pic);
    SortKeys(pic);

    long target = gCurFrame;
    if ((newKey || index == 0) && !autoAddKey)
        target = gCurFrame + (gFrameRate + 50) / 100;
    GotoFrame(target, true);
    dirty = true;
    return newKey;
}
