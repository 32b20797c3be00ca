// Cursor kinds and what they show.

#include "platform/wnd/cursor.h"

#include <gtest/gtest.h>
#include <QGuiApplication>

#include "platform/wnd/cursor_pictures_qt.h"

namespace {

TEST(ChangeCursor, KindFourShowsTheArrow)
{
    ChangeCursor(12);
    ChangeCursor(4);
    EXPECT_EQ(GetCursorImage(), kCursorImageArrow);
    ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::ArrowCursor);
}

TEST(ChangeCursor, EveryKindHasItsImage)
{
    const int expected[] = {
        kCursorImageArrow,  kCursorImageArrow, kCursorImageCrosshair, kCursorImageIBeam,
        kCursorImageArrow,  kCursorImageMove,  kCursorImageResize,    kCursorImageVertical,
        kCursorImageResize, kCursorImageSlide, kCursorImagePlus,      kCursorImageWait,
        kCursorImageRotate, kCursorImageMove,  kCursorImageTilt,
    };
    for (int kind = 0; kind <= 14; ++kind)
        EXPECT_EQ(CursorImageForKind(kind), expected[kind]) << kind;
    EXPECT_EQ(CursorImageForKind(-1), kCursorImageArrow);
    EXPECT_EQ(CursorImageForKind(15), kCursorImageArrow);
    EXPECT_EQ(CursorImageForKind(1001), kCursorImageArrow);
}

TEST(ChangeCursor, SystemShapesAndDrawnPictures)
{
    ChangeCursor(3);
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::IBeamCursor);
    ChangeCursor(2);
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::CrossCursor);
    ChangeCursor(11);
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
    ChangeCursor(13);
    EXPECT_EQ(GetCursorImage(), kCursorImageMove);
    const QCursor* shown = QGuiApplication::overrideCursor();
    EXPECT_EQ(shown->shape(), Qt::BitmapCursor);
    EXPECT_EQ(shown->hotSpot(), QPoint(kCursorHotSpot, kCursorHotSpot));
    EXPECT_EQ(shown->pixmap().toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied),
              DrawCursorPicture(kCursorImageMove));
    ChangeCursor(10);
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::BitmapCursor);
    EXPECT_EQ(GetCursorImage(), kCursorImagePlus);
    ChangeCursor(1);
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::ArrowCursor);
}

TEST(ChangeCursor, OneOverrideForTheWholeProgram)
{
    ChangeCursor(5);
    ChangeCursor(6);
    ChangeCursor(6);
    ChangeCursor(0);
    // Restoring once leaves none: every change replaced the one cursor.
    QGuiApplication::restoreOverrideCursor();
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    ChangeCursor(0);
    EXPECT_NE(QGuiApplication::overrideCursor(), nullptr);
}

}  // namespace
