// Shared main of the test binaries: a QApplication (offscreen under ctest) so
// widget tests can run, and the Firebird environment of the program.
//
// Every data folder a test run opens is private to it, so the run uses one
// explicit lock folder for all of them (shared with the tools it starts).
// Tests that need another process of the program start the binary itself in
// one of the helper modes below, which prepare the environment as the program
// does instead.
#include "dm.h"
#include "fbenvironment.h"
#include "query.h"
#include "scripteddialogs.h"
#include "scriptedservices.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cstring>
#include <iostream>
#include <string>

namespace {

// Runs a helper mode; a failure goes to stderr as the program would say it.
template <typename F>
int reporting(F f)
{
    try {
        return f();
    } catch (const tv::FirebirdEnvironmentError& e) {
        std::cerr << e.message().toStdString() << std::endl;
    } catch (const tv::DatabaseError& e) {
        std::cerr << e.message().toStdString() << std::endl;
    }
    return 1;
}

// --hold-as-program SQL: starts as the desktop program does (data path from
// morvanI.sys), runs SQL in the shared transaction, says "retenida" and
// commits when a line (or the end) arrives on stdin.
int holdAsProgram(const char* sql)
{
    return reporting([&] {
        const QString dataPath = tv::prepareFirebirdEnvironmentForProgram();
        tv::Tdm data(dataPath);
        data.datos.open();
        tv::Query::execute(data.datos, data.Transacion, QString::fromUtf8(sql));
        std::cout << "retenida" << std::endl;
        std::string line;
        std::getline(std::cin, line);
        data.Transacion.commit();
        data.datos.close();
        return 0;
    });
}

// --open-folders DIR...: opens each local data folder in turn, as one plain
// process of the program or the tool would.
int openFolders(int count, char** folders)
{
    return reporting([&] {
        for (int i = 0; i < count; ++i) {
            const QString folder = QString::fromLocal8Bit(folders[i]);
            tv::prepareFirebirdEnvironment(folder);
            tv::Tdm data(folder);
            data.datos.open();
            tv::Query::scalar(data.datos, data.Transacion, QStringLiteral("SELECT COUNT(*) FROM EMPRESA"));
            data.Transacion.commit();
            data.datos.close();
            std::cout << "abierta " << folders[i] << std::endl;
        }
        return 0;
    });
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 3 && std::strcmp(argv[1], "--hold-as-program") == 0)
        return holdAsProgram(argv[2]);
    if (argc >= 2 && std::strcmp(argv[1], "--open-folders") == 0)
        return openFolders(argc - 2, argv + 2);

    QTemporaryDir locks(QDir::tempPath() + QStringLiteral("/tejavista-pruebas-bloqueos-XXXXXX"));
    try {
        tv::prepareFirebirdEnvironmentForPrivateFolders(locks.path());
    } catch (const tv::FirebirdEnvironmentError& e) {
        std::cerr << e.message().toStdString() << std::endl;
        return 1;
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Web views (maps) share one GL context; Qt wants it said before the application.
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    // No test may show a message it did not script.
    static tv::test::FailingDialogs failing;
    tv::ui::Dialogs::install(&failing);
    // Nor open a file dialog, a printer or a spreadsheet it did not script.
    static tv::test::FailingServices noServices;
    tv::ui::Services::install(&noServices);
    return RUN_ALL_TESTS();
}
