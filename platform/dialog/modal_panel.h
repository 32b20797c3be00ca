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
    tagPOINT at = {0, 0};  // the pointer in the owner's window pixels (its drawing origin added)
};

// What a key means to a panel: Esc cancels it, Return confirms it, other keys mean nothing.
enum class PanelKey { kNone, kCancel, kConfirm };
PanelKey ReadPanelKey(const PanelInput& input);

// How a panel's loop ended, or kRunning while it goes on.
enum class PanelEnd { kRunning, kCancel, kConfirm, kApply };

// What differs between panels; RunModalPanel reads the input and does the rest.
class PanelClient {
public:
    // A button-down in the owner at `at` (window pixels). Answers how the panel ends, or
    // kRunning to go on; sets *dragStarted when the press began a drag that the pointer leads.
    virtual PanelEnd Press(tagPOINT at, bool* dragStarted) = 0;
    // The pointer moved to `at` (window pixels) in the owner while a drag was on.
    virtual void Drag(tagPOINT at) = 0;
    // Draws the panel; the owner's image is current.
    virtual void Draw() = 0;

protected:
    ~PanelClient() = default;
};

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
    friend PanelEnd RunModalPanel(ModalPanel& panel, PanelClient& client);
    CPWnd* owner;
    DrawPort* previousPort;
    DrawState previousState;
    FontRecord* previousFont;
    SavedPixels saved;
};

// Draws the panel, then reads input until it ends, and answers how. Esc cancels and Return
// confirms (other keys go nowhere); a button-down in another window cancels, one in the owner
// goes to the client. A drag follows the pointer's moves in the owner until its button comes up;
// a button-down whose release never came ends it too. Other input is handed on to the owner.
// The panel is drawn again after every read: a change shows at once, and a paint the owner got
// while the input was read does not leave the panel hidden.
PanelEnd RunModalPanel(ModalPanel& panel, PanelClient& client);
