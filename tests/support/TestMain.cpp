#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QtCore/QCoreApplication>

// Queued calls, timers and coroutines need an application; nothing here needs a display.
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
