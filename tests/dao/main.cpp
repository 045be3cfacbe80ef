#include "tests/dao/Children.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const int status = yrw::dao::runChild(QCoreApplication::arguments());
    if (status >= 0) {
        return status;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
