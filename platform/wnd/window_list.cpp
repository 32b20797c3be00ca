#include "platform/wnd/window_list.h"

WindowList gWindowList = {0, {}};

bool IsWindowListed(const CPWnd* window)
{
    if (!window)
        return false;
    for (int i = 0; i < gWindowList.count; ++i) {
        if (gWindowList.windows[i] == window)
            return true;
    }
    return false;
}

bool AddToWindowList(CPWnd* window)
{
    if (!window || gWindowList.count >= kMaxWindows || IsWindowListed(window))
        return false;
    gWindowList.windows[gWindowList.count++] = window;
    return true;
}

void RemoveFromWindowList(CPWnd* window)
{
    int kept = 0;
    for (int i = 0; i < gWindowList.count; ++i) {
        if (gWindowList.windows[i] != window)
            gWindowList.windows[kept++] = gWindowList.windows[i];
    }
    for (int i = kept; i < gWindowList.count; ++i)
        gWindowList.windows[i] = nullptr;
    gWindowList.count = kept;
}
