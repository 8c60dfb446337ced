// The window tests as one program: a real application, whatever the test.
#include "browser/forms/web_page.h"
#include "support/preparation.h"

#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const velloria::tests::Preparation preparation;
    velloria::browser::registerEventScheme();
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
