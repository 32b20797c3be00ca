#include "platform/wnd/message_queue.h"

#include <QApplication>
#include <QCursor>
#include <QEvent>
#include <QPointer>
#include <QTimer>
#include <deque>
#include <memory>

#include "platform/wnd/cpwnd.h"
#include "platform/wnd/input_queue_qt.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/shell_internal_qt.h"
#include "platform/wnd/window_list.h"
#include "platform/wnd/window_widgets_qt.h"

namespace {

constexpr int kWaitTicks = 20;
constexpr int kWaitMilliseconds = kWaitTicks * 1000 / 60;

struct InputRecord {
    CPWnd* window;
    unsigned int msg;
    long wParam;
    long lParam;
    QPoint point;
    QPointer<QObject> receiver;
    std::unique_ptr<QEvent> event;
};

std::deque<InputRecord>& Queue()
{
    static std::deque<InputRecord> queue;
    return queue;
}

int sReading = 0;         // modal reads under way
bool sReplaying = false;  // unread input is being handed out
bool sReplayScheduled = false;

void ScheduleReplay()
{
    if (sReplayScheduled)
        return;
    sReplayScheduled = true;
    QTimer::singleShot(0, QCoreApplication::instance(), []() {
        sReplayScheduled = false;
        // A read that started meanwhile takes the input itself.
        if (sReading == 0)
            ReplayUnreadInput();
    });
}

// What a read answers when there was no input: the window under the pointer, message 0.
void AnswerNoInput(CPWnd*& window, unsigned int& msg, long& wParam, long& lParam, tagPOINT& point)
{
    msg = 0;
    wParam = 0;
    lParam = 0;
    window = nullptr;
    QPoint global = QCursor::pos();
    point = {global.x(), global.y()};
    QWidget* under = QApplication::widgetAt(global);
    if (!under)
        return;
    WindowPart part;
    QPoint at;
    CPWnd* found = FindWindowOf(under, &part, &at, under->mapFromGlobal(global));
    if (found && IsWindowListed(found)) {
        window = found;
        point = {at.x(), at.y()};
    }
}

int Read(bool wait, CPWnd*& window, unsigned int& msg, long& wParam, long& lParam, long& time,
         tagPOINT& point)
{
    time = 0;
    // What the modal loop drew since its last read reaches the screen.
    RefreshScreens();
    auto& queue = Queue();
    if (queue.empty()) {
        ++sReading;
        if (wait) {
            bool timedOut = false;
            QTimer timer;
            timer.setSingleShot(true);
            timer.setTimerType(Qt::PreciseTimer);
            QObject::connect(&timer, &QTimer::timeout, [&timedOut]() { timedOut = true; });
            timer.start(kWaitMilliseconds);
            while (queue.empty() && !timedOut)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        } else {
            QCoreApplication::processEvents(QEventLoop::AllEvents);
        }
        --sReading;
    }
    if (queue.empty()) {
        AnswerNoInput(window, msg, wParam, lParam, point);
        return 1;
    }
    InputRecord record = std::move(queue.front());
    queue.pop_front();
    window = record.window;
    msg = record.msg;
    wParam = record.wParam;
    lParam = record.lParam;
    point = {record.point.x(), record.point.y()};
    if (!queue.empty() && sReading == 0)
        ScheduleReplay();
    return 1;
}

}  // namespace

bool IsReadingInput() { return sReading > 0; }

void RecordInput(CPWnd* window, unsigned int msg, long wParam, long lParam, QPoint point,
                 QObject* receiver, const QEvent* event)
{
    Queue().push_back({window, msg, wParam, lParam, point, receiver,
                       std::unique_ptr<QEvent>(event ? event->clone() : nullptr)});
}

void ReplayUnreadInput()
{
    if (sReplaying)
        return;
    sReplaying = true;
    auto& queue = Queue();
    while (!queue.empty() && sReading == 0) {
        InputRecord record = std::move(queue.front());
        queue.pop_front();
        if (record.receiver && record.event)
            QCoreApplication::sendEvent(record.receiver, record.event.get());
    }
    sReplaying = false;
}

void DropInputOf(CPWnd* window)
{
    auto& queue = Queue();
    for (auto it = queue.begin(); it != queue.end();) {
        if (it->window == window)
            it = queue.erase(it);
        else
            ++it;
    }
}

int GetAMessage(CPWnd*& window, unsigned int& msg, long& wParam, long& lParam, long& time,
                tagPOINT& point)
{
    return Read(true, window, msg, wParam, lParam, time, point);
}

int PeekAMessage(CPWnd*& window, unsigned int& msg, long& wParam, long& lParam, long& time,
                 tagPOINT& point)
{
    return Read(false, window, msg, wParam, lParam, time, point);
}

void DispatchAMessage(CPWnd* window, unsigned int msg, long wParam, long lParam, long, tagPOINT)
{
    if (!IsWindowListed(window))
        return;
    window->HandleEvent(msg, wParam, lParam);
    RefreshScreens();
}
