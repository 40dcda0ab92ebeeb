// Shared main of the test binaries: a QApplication (offscreen under ctest) so
// widget tests can run, and the Firebird environment of the program.
#include "fbenvironment.h"

#include <QApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    tv::prepareFirebirdEnvironment();
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
