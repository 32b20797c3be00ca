#include "platform/wnd/cpmenu.h"

#include <QAction>
#include <QApplication>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <cstring>

#include "platform/base/to_qt.h"
#include "platform/wnd/cpwnd.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/shell.h"
#include "platform/wnd/window_widgets_qt.h"

namespace {

CPMenu* sLastMenu = nullptr;

// "&" is shown as itself, not as a mnemonic marker.
QString PlainText(const QByteArray& text) { return ToQString(text).replace("&", "&&"); }

QByteArray CutTitle(const char* title)
{
    QByteArray text(title ? title : "");
    if (text.size() > kMaxMenuTitle)
        text.truncate(kMaxMenuTitle);
    return text;
}

// Splits "Save Show/S" into the label "Save Show" and the shortcut character 'S' (0 for none).
QByteArray ParseItemText(const char* text, char* shortcut)
{
    *shortcut = 0;
    QByteArray label;
    for (const char* p = text ? text : ""; *p; ++p) {
        if (*p == '/' && p[1] && !*shortcut) {
            *shortcut = p[1];
            ++p;
            continue;
        }
        label += *p;
    }
    return label;
}

QString ShortcutText(char key)
{
    QString name = QChar::fromLatin1(key).toUpper();
    return QKeySequence(QStringLiteral("Ctrl+") + name).toString(QKeySequence::NativeText);
}

// The program sets check marks; an item shows one only while it is checked.
void ShowCheck(QAction* action, bool on)
{
    if (on) {
        action->setCheckable(true);
        action->setChecked(true);
    } else {
        action->setChecked(false);
        action->setCheckable(false);
    }
}

}  // namespace

struct CPMenu::Impl {
    int table[kMenuCount][kMenuItemCount];
    int itemCount[kMenuCount] = {};
    bool checked[kMenuCount][kMenuItemCount] = {};
    QPointer<QMenu> menus[kMenuCount];
    QPointer<QAction> items[kMenuCount][kMenuItemCount];
    // Lists hung under items (SetItemList), with the submenus that show them.
    std::vector<MenuListEntry> lists[kMenuCount][kMenuItemCount];
    QPointer<QMenu> listMenus[kMenuCount][kMenuItemCount];
    int menuCount = 0;
    int current = -1;            // the menu items are added to; -1 for none
    QPointer<QMenuBar> bar;      // this menu bar
    QPointer<FrameWidget> host;  // the desktop window it is on
    QPointer<QMenuBar> saved;    // the bar that was there before
    bool haveSaved = false;

    void Clear()
    {
        for (auto& row : table)
            for (int& slot : row)
                slot = kEmptyMenuSlot;
        for (int m = 0; m < kMenuCount; ++m) {
            itemCount[m] = 0;
            menus[m] = nullptr;
            for (int i = 0; i < kMenuItemCount; ++i) {
                checked[m][i] = false;
                items[m][i] = nullptr;
                lists[m][i].clear();
                listMenus[m][i] = nullptr;
            }
        }
        menuCount = 0;
        current = -1;
    }
};

CPMenu::CPMenu() : impl(new Impl) { impl->Clear(); }

CPMenu::~CPMenu()
{
    RestoreOriginalMenu();
    delete impl->bar.data();
    if (sLastMenu == this)
        sLastMenu = nullptr;
    delete impl;
}

void CPMenu::Create(CPWnd* window)
{
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return;
    if (impl->bar) {
        RestoreOriginalMenu();
        delete impl->bar.data();
    }
    impl->Clear();

    CPWnd* target = window ? window : gFirstWin;
    QWidget* frame = GetFrameWidget(target);
    impl->host = frame ? dynamic_cast<FrameWidget*>(frame->window()) : nullptr;
    impl->bar = new QMenuBar;
    if (impl->host)
        impl->saved = impl->host->SwapMenuBar(impl->bar);
    else
        impl->saved = nullptr;
    impl->haveSaved = true;
    sLastMenu = this;
}

void CPMenu::AddTopLevel(const char* title, int flags)
{
    if (!impl->bar || impl->menuCount >= kMenuCount) {
        impl->current = -1;
        return;
    }
    QMenu* menu = impl->bar->addMenu(PlainText(CutTitle(title)));
    menu->menuAction()->setEnabled((flags & kMenuDisabled) == 0);
    impl->menus[impl->menuCount] = menu;
    impl->current = impl->menuCount++;
    if (impl->host)
        impl->host->LayOut();
}

void CPMenu::AddItem(int id, const char* text, int flags)
{
    int m = impl->current;
    if (m < 0 || !impl->menus[m] || impl->itemCount[m] >= kMenuItemCount)
        return;
    int slot = impl->itemCount[m];
    QMenu* menu = impl->menus[m];
    QAction* action;
    if (id == -1) {
        action = menu->addSeparator();
    } else {
        char key = 0;
        QString label = PlainText(ParseItemText(text, &key));
        if (key)
            label += QLatin1Char('\t') + ShortcutText(key);
        action = menu->addAction(label);
        action->setEnabled((flags & kMenuItemDisabled) == 0);
        impl->checked[m][slot] = (flags & kMenuItemChecked) != 0;
        ShowCheck(action, impl->checked[m][slot]);
        Impl* data = impl;
        QObject::connect(action, &QAction::triggered, action, [this, data, m, slot]() {
            // Qt flips a checkable item when it is chosen; the program decides the marks.
            if (data->items[m][slot])
                ShowCheck(data->items[m][slot], data->checked[m][slot]);
            int command = GetID(m, slot);
            // Delivered once the menu has closed.
            QMetaObject::invokeMethod(
                QCoreApplication::instance(),
                [command]() { PostAMessage(nullptr, kMsgCommand, command, 0); },
                Qt::QueuedConnection);
        });
    }
    impl->table[m][slot] = id;
    impl->items[m][slot] = action;
    ++impl->itemCount[m];
}

int CPMenu::GetID(int menu, int item) const
{
    if (menu < 0 || menu >= kMenuCount || item < 0 || item >= kMenuItemCount)
        return -1;
    return impl->table[menu][item];
}

void CPMenu::SetState(int id, int flags)
{
    for (int m = 0; m < impl->menuCount; ++m) {
        for (int i = 0; i < kMenuItemCount; ++i) {
            if (impl->table[m][i] != id)
                continue;
            if (QAction* action = impl->items[m][i]) {
                impl->checked[m][i] = (flags & kMenuItemChecked) != 0;
                ShowCheck(action, impl->checked[m][i]);
                action->setEnabled((flags & kMenuItemDisabled) == 0);
            }
            break;
        }
    }
    if (impl->bar)
        impl->bar->update();
}

void CPMenu::SetCheck(int id, bool on)
{
    for (int m = 0; m < impl->menuCount; ++m) {
        for (int i = 0; i < kMenuItemCount; ++i) {
            if (impl->table[m][i] != id)
                continue;
            if (QAction* action = impl->items[m][i]) {
                impl->checked[m][i] = on;
                ShowCheck(action, on);
            }
            break;
        }
    }
    if (impl->bar)
        impl->bar->update();
}

void CPMenu::SetItemList(int id, const std::vector<MenuListEntry>& entries)
{
    for (int m = 0; m < impl->menuCount; ++m) {
        for (int i = 0; i < kMenuItemCount; ++i) {
            if (impl->table[m][i] != id)
                continue;
            QAction* action = impl->items[m][i];
            impl->lists[m][i] = entries;
            if (!action)
                break;
            QMenu* list = impl->listMenus[m][i];
            if (!list) {
                list = new QMenu(impl->menus[m]);
                impl->listMenus[m][i] = list;
                action->setMenu(list);
            }
            list->clear();
            for (const MenuListEntry& entry : entries) {
                QAction* item = list->addAction(PlainText(QByteArray(entry.text.c_str())));
                int command = entry.id;
                QObject::connect(item, &QAction::triggered, item, [command]() {
                    // Delivered once the menu has closed, as the items of the bar are.
                    QMetaObject::invokeMethod(
                        QCoreApplication::instance(),
                        [command]() { PostAMessage(nullptr, kMsgCommand, command, 0); },
                        Qt::QueuedConnection);
                });
            }
            action->setEnabled(!entries.empty());
            break;
        }
    }
}

std::vector<MenuListEntry> CPMenu::GetItemList(int id) const
{
    for (int m = 0; m < impl->menuCount; ++m) {
        for (int i = 0; i < kMenuItemCount; ++i) {
            if (impl->table[m][i] == id)
                return impl->lists[m][i];
        }
    }
    return {};
}

void CPMenu::RestoreOriginalMenu()
{
    if (!impl->haveSaved)
        return;
    if (impl->host)
        impl->host->SwapMenuBar(impl->saved);
    impl->haveSaved = false;
    impl->saved = nullptr;
}

int CPMenu::GetMenuCount() const { return impl->menuCount; }

int CPMenu::GetItemCount(int menu) const
{
    return (menu >= 0 && menu < impl->menuCount) ? impl->itemCount[menu] : 0;
}

bool CPMenu::IsItemChecked(int menu, int item) const
{
    if (menu < 0 || menu >= impl->menuCount || item < 0 || item >= impl->itemCount[menu])
        return false;
    return impl->checked[menu][item];
}

bool CPMenu::IsItemEnabled(int menu, int item) const
{
    if (menu < 0 || menu >= impl->menuCount || item < 0 || item >= impl->itemCount[menu])
        return false;
    QAction* action = impl->items[menu][item];
    QMenu* owner = impl->menus[menu];
    return action && action->isEnabled() && owner && owner->menuAction()->isEnabled();
}

QMenuBar* CPMenu::GetMenuBar() const { return impl->bar; }

int MenuCommand(int menuID, int item)
{
    if (!sLastMenu || menuID < kFirstMenuID || menuID >= kFirstMenuID + kMenuCount || item < 1 ||
        item > kMenuItemCount)
        return -1;
    return sLastMenu->GetID(menuID - kFirstMenuID, item - 1);
}
