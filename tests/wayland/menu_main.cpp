#include "platform/freedesktop/wayland/LayerShell.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    orvelle::LayerShell::allowRolelessWindows();
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
