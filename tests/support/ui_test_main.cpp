// main() for tests that need Qt: starts a QApplication on the offscreen platform first, so
// fonts, images and widgets work without a display.

#include <gtest/gtest.h>
#include <QApplication>
#include <cstdlib>

int main(int argc, char** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    setenv("QT_SCALE_FACTOR", "1", 0);
    QApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
