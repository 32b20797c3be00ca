#pragma once
// Reading input without the message loop, for modal loops (rubber-band drags, dialogs,
// playback). While a modal loop reads, the system's input on the program's windows is kept for
// it instead of being handed to the windows; paint messages still go out as they come. Input a
// modal loop leaves unread reaches the windows in the ordinary way once it is done.

#include "platform/base/types.h"

class CPWnd;

// Waits up to 20 ticks for one input event and answers 1. Results:
//   window   the window under the event (for no event: the window under the pointer, or null)
//   msg      1009 button down, 1011 button up, 1019 key down and 1018 key up (wParam the
//            character), 1013 pointer moved, 0 anything else or no event
//   wParam   the character for keys, else 0
//   lParam   the point as MakePointParam packs it for mouse messages, else 0
//   time     0
//   point    the pointer, in `window`'s content coordinates
int GetAMessage(CPWnd*& window, unsigned int& msg, long& wParam, long& lParam, long& time,
                tagPOINT& point);
// The same without waiting.
int PeekAMessage(CPWnd*& window, unsigned int& msg, long& wParam, long& lParam, long& time,
                 tagPOINT& point);
// Hands a message that was read to the window's HandleEvent (listed windows only).
void DispatchAMessage(CPWnd* window, unsigned int msg, long wParam, long lParam, long time,
                      tagPOINT point);
