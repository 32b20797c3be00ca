#include "platform/base/from_qt.h"

#include <gtest/gtest.h>

TEST(FromQString, GivesUtf8)
{
    EXPECT_EQ(FromQString(QString::fromUtf8("caf\xC3\xA9")), "caf\xC3\xA9");
    EXPECT_EQ(FromQString(QString()), "");
}

TEST(FromQPath, GivesTheFileSystemsBytes)
{
    QString path = QStringLiteral("/tmp/a b.plx");
    EXPECT_EQ(FromQPath(path), QFile::encodeName(path).toStdString());
    EXPECT_EQ(FromQPath(path), "/tmp/a b.plx");
}

TEST(FromQRect, RightAndBottomLieOutside)
{
    tagRECT rect = FromQRect(QRect(10, 20, 20, 5));
    EXPECT_EQ(rect.left, 10);
    EXPECT_EQ(rect.top, 20);
    EXPECT_EQ(rect.right, 30);
    EXPECT_EQ(rect.bottom, 25);
}
