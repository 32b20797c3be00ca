#include "ui/dialogs/viewer_hidden.h"

#include "platform/dialog/cpdialog.h"
#include "ui/editor_windows.h"
#include "ui/viewer/cview.h"

ViewerHidden::ViewerHidden()
{
    if (pViewer != nullptr && pViewer->IsVisible()) {
        viewer_ = pViewer;
        viewer_->Show(0);
    }
}

ViewerHidden::~ViewerHidden() { ShowAgain(); }

void ViewerHidden::ShowAgain()
{
    // The viewer may have gone while the dialog was open (the editor closing).
    if (viewer_ != nullptr && viewer_ == pViewer)
        viewer_->Show(1);
    viewer_ = nullptr;
}

int RunDialogWithoutViewer(CPWnd* owner, int x, int y, int count, const char* descriptions,
                           char* values, const char* title)
{
    ViewerHidden hidden;
    return CPDialog(owner, x, y, count, descriptions, values, title);
}
