// main() for tests that need Qt: starts a QApplication on the offscreen platform first, so
// fonts, images and widgets work without a display.

#include <QApplication>
#include <cstdlib>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    setenv("QT_SCALE_FACTOR", "1", 0);
    QApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
