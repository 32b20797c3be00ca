#pragma once
// What the modal panels drawn over a window (the described dialogs, the colour picker) share:
// drawing on the owner's backing image without disturbing the caller's drawing state, putting
// the covered pixels back afterwards, and reading input the way the panels take it.

#include "platform/base/types.h"
#include "platform/dialog/saved_pixels.h"
#include "platform/draw/draw_state.h"
#include "platform/draw/font.h"

class CPWnd;
class DrawPort;

// One input event read for a panel.
struct PanelInput {
    CPWnd* window = nullptr;  // the window it happened in (null: none of the program's)
    unsigned int msg = 0;     // as GetAMessage answers: 1009, 1011, 1013, 1018, 1019 or 0
    long wParam = 0;
    long lParam = 0;
    tagPOINT at = {0, 0};     // the pointer in the owner's window pixels (its drawing origin added)
};

// What a key means to a panel: Esc cancels it, Return confirms it, other keys mean nothing.
enum class PanelKey { kNone, kCancel, kConfirm };
PanelKey ReadPanelKey(const PanelInput& input);

class ModalPanel {
public:
    // Remembers the caller's port, drawing state and font, and makes the owner's backing image
    // the current port.
    explicit ModalPanel(CPWnd* owner);
    // The same, then keeps the pixels of `covers` at once.
    ModalPanel(CPWnd* owner, const tagRECT& covers);
    // Keeps the pixels of `covers` (window pixels, edges included), to be put back at the end.
    // For a panel that must measure itself (and so change the font) before it knows its size.
    void Cover(const tagRECT& covers);
    // Puts the covered pixels back and the caller's port, drawing state and font.
    ~ModalPanel();
    ModalPanel(const ModalPanel&) = delete;
    ModalPanel& operator=(const ModalPanel&) = delete;

    // Makes the owner's image current again (a nested panel or box may have changed it).
    void Select();
    // Waits for the next input (GetAMessage) and answers it.
    PanelInput Read();
    // Hands input the panel does not use to the owner, so that it keeps painting: pointer moves
    // and button-ups in the owner go to its HandleEvent; keys, other windows' input and empty
    // reads go nowhere.
    void HandOn(const PanelInput& input);

private:
    CPWnd* owner;
    DrawPort* previousPort;
    DrawState previousState;
    FontRecord* previousFont;
    SavedPixels saved;
};
