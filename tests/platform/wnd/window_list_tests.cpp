// The live-window list on its own.

#include "platform/wnd/window_list.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

// Stand-ins: the list only keeps the addresses.
CPWnd* Fake(int i) { return reinterpret_cast<CPWnd*>(static_cast<uintptr_t>(0x1000 + 16 * i)); }

struct EmptyList {
    EmptyList() { gWindowList.count = 0; }
    ~EmptyList() { gWindowList.count = 0; }
};

TEST(LiveWindowList, KeepsTheOrderOfCreation)
{
    EmptyList empty;
    EXPECT_TRUE(AddToWindowList(Fake(1)));
    EXPECT_TRUE(AddToWindowList(Fake(2)));
    EXPECT_TRUE(AddToWindowList(Fake(3)));
    EXPECT_FALSE(AddToWindowList(Fake(2)));
    EXPECT_FALSE(AddToWindowList(nullptr));
    RemoveFromWindowList(Fake(2));
    ASSERT_EQ(gWindowList.count, 2);
    EXPECT_EQ(gWindowList.windows[0], Fake(1));
    EXPECT_EQ(gWindowList.windows[1], Fake(3));
    EXPECT_EQ(gWindowList.windows[2], nullptr);
    EXPECT_FALSE(IsWindowListed(Fake(2)));
    EXPECT_TRUE(IsWindowListed(Fake(3)));
}

TEST(LiveWindowList, HoldsTwoHundredFiftySix)
{
    EmptyList empty;
    for (int i = 0; i < kMaxWindows; ++i)
        ASSERT_TRUE(AddToWindowList(Fake(i)));
    EXPECT_FALSE(AddToWindowList(Fake(kMaxWindows)));
    EXPECT_EQ(gWindowList.count, kMaxWindows);
    EXPECT_FALSE(IsWindowListed(Fake(kMaxWindows)));
    RemoveFromWindowList(Fake(0));
    EXPECT_TRUE(AddToWindowList(Fake(kMaxWindows)));
    EXPECT_EQ(gWindowList.windows[kMaxWindows - 1], Fake(kMaxWindows));
}

}  // namespace
