#include "ui/main/edit_menu.h"

EditMenuState EditMenuStateFor(int selection, bool clipboardHoldsKey, int undoCount, int redoCount)
{
    EditMenuState state;
    if (selection >= 1) {
        state.del = true;
        state.cut = true;
        state.copy = true;
    } else if (selection == 0) {
        state.copy = true;
    }
    state.paste = clipboardHoldsKey;
    state.undo = undoCount > 0;
    state.redo = redoCount > 0;
    return state;
}
