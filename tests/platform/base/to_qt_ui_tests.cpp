#include "platform/base/to_qt.h"

#include <gtest/gtest.h>

#include "platform/base/from_qt.h"

TEST(ToQString, ReadsUtf8AndNullAsEmpty)
{
    EXPECT_EQ(ToQString("caf\xC3\xA9"), QString::fromUtf8("caf\xC3\xA9"));
    EXPECT_EQ(ToQString("caf\xC3\xA9").size(), 4);
    EXPECT_TRUE(ToQString(static_cast<const char*>(nullptr)).isEmpty());
    EXPECT_EQ(ToQString(std::string("abc")), QStringLiteral("abc"));
}

TEST(ToQPath, GivesBackTheSameBytesThroughFromQPath)
{
    const std::string path = "/tmp/Sh\xC3\xB6w 1.plx";
    EXPECT_EQ(FromQPath(ToQPath(path)), path);
    EXPECT_EQ(FromQPath(ToQPath(path.c_str())), path);
    EXPECT_EQ(ToQPath(path), QFile::decodeName(path.c_str()));
    EXPECT_TRUE(ToQPath(static_cast<const char*>(nullptr)).isEmpty());
}

TEST(ToQRect, RightAndBottomLieOutside)
{
    tagRECT rect = {10, 20, 30, 25};
    QRect q = ToQRect(rect);
    EXPECT_EQ(q.x(), 10);
    EXPECT_EQ(q.y(), 20);
    EXPECT_EQ(q.width(), 20);
    EXPECT_EQ(q.height(), 5);
}

TEST(ToQRect, AnUpsideDownRectangleIsEmpty)
{
    QRect q = ToQRect(30, 25, 10, 20);
    EXPECT_EQ(q.width(), 0);
    EXPECT_EQ(q.height(), 0);
    EXPECT_TRUE(q.isEmpty());
}

TEST(ToQRect, ExtremeSidesDoNotOverflow)
{
    QRect q = ToQRect(INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX);
    EXPECT_EQ(q.width(), INT32_MAX);
    EXPECT_EQ(q.height(), INT32_MAX);
}

TEST(ToQColor, RedIsInTheLowByte)
{
    QColor colour = ToQColor(0x00336699);
    EXPECT_EQ(colour.red(), 0x99);
    EXPECT_EQ(colour.green(), 0x66);
    EXPECT_EQ(colour.blue(), 0x33);
    EXPECT_EQ(colour.alpha(), 255);
    // Bits above the blue byte are not a colour.
    EXPECT_EQ(ToQColor(0x7F0000FF), QColor(255, 0, 0));
}
