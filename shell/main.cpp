#include "application.h"
#include "fbenvironment.h"

#include <QApplication>

int main(int argc, char** argv)
{
    // The Firebird client reads its environment once, at its first call.
    tv::prepareFirebirdEnvironment();
    QApplication app(argc, argv);
    return tv::shell::run(app);
}
