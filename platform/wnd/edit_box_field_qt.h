#pragma once
// The Qt field of the active edit box, for the portable layer's own files and tests.

class QLineEdit;
class CPWnd;

// The field of gMacEditBox, or null when no edit box is active.
QLineEdit* ActiveEditField();
// The window the active edit box lies in, or null.
CPWnd* ActiveEditOwner();
// Disposes of the active edit box when it lies in `window`.
void RemoveEditBoxIn(CPWnd* window);
