#include <QApplication>

#include <gmock/gmock.h>

int main(int argumentCount, char *arguments[]) {
    testing::InitGoogleMock(&argumentCount, arguments);
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    int one = 1;
    QApplication application(one, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
