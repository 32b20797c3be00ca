#pragma once
// The input kept for a modal loop, for the shell's own files.

#include <QPoint>

class CPWnd;
class QEvent;
class QObject;

// Keeps one input event read while a modal loop waits: the message GetAMessage answers with, and
// a copy of the event to hand out the ordinary way if the loop ends without reading it.
void RecordInput(CPWnd* window, unsigned int msg, long wParam, long lParam, QPoint point,
                 QObject* receiver, const QEvent* event);
// Hands out, the ordinary way, the input a finished modal loop left unread.
void ReplayUnreadInput();
// Drops the input kept for a window that goes.
void DropInputOf(CPWnd* window);
