#pragma once
// The viewer is hidden while a dialog or a file dialog of the main window is open, so it never
// covers it, and shown again afterwards when it was showing before.

class CPWnd;

class ViewerHidden {
public:
    // Hides the viewer when there is one and it is showing.
    ViewerHidden();
    // Shows it again (once).
    ~ViewerHidden();
    ViewerHidden(const ViewerHidden&) = delete;
    ViewerHidden& operator=(const ViewerHidden&) = delete;

    // Shows the viewer again now rather than at the end of the scope.
    void ShowAgain();

private:
    CPWnd* viewer_ = nullptr;  // null when nothing was hidden
};

// Runs a described dialog (cpdialog.h) with its top-left corner at (x, y) of `owner`, with the
// viewer hidden meanwhile; answers what CPDialog answers.
int RunDialogWithoutViewer(CPWnd* owner, int x, int y, int count, const char* descriptions,
                           char* values, const char* title);
