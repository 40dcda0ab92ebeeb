#include "application.h"
#include "dialogs.h"
#include "fbenvironment.h"
#include "mapa.h"

#include <QApplication>

#include <iostream>

namespace {

// A box needs a screen; without one, stderr and the exit code say it all.
bool canShowWindows()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if (platform.startsWith("offscreen") || platform.startsWith("minimal"))
        return false;
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

} // namespace

int main(int argc, char** argv)
{
    // The Firebird client reads its environment once, at its first call, and
    // the data folder decides the lock folder: both are settled first.
    try {
        tv::prepareFirebirdEnvironmentForProgram();
    } catch (const tv::FirebirdEnvironmentError& e) {
        std::cerr << e.message().toStdString() << '\n';
        if (canShowWindows()) {
            QApplication app(argc, argv);
            tv::ui::dialogs().error(e.message());
        }
        return 1;
    }
    // The web engine (maps) wants its settings before the application exists.
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    tv::registro::prepararMotorWeb();
    QApplication app(argc, argv);
    return tv::shell::run(app);
}
