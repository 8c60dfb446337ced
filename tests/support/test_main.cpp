// The tests of one folder as one program.
#include "support/preparation.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const velloria::tests::Preparation preparation;
    return RUN_ALL_TESTS();
}
