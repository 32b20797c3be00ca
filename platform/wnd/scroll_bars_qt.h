#pragma once
// The scroll bars of a window, for the portable layer's own files.

class CPWnd;

// Adds the bars the window's style asks for, each with a maximum of 100.
void MakeScrollBars(CPWnd* window);
// Shows the window's bars and has them redrawn.
void ShowScrollBars(CPWnd* window);
// Hands the window's drawing origin to its backing image.
void ApplyWindowOrigin(CPWnd* window);
