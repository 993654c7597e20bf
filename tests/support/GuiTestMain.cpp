#include <QGuiApplication>

#include <gtest/gtest.h>

// Tests that measure text or paint need a GUI application; they run offscreen.
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
