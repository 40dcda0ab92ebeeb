#include "application.h"

#include "terminationwatcher.h"

#include "appstate.h"
#include "datapath.h"
#include "dialogs.h"
#include "dm.h"
#include "frminicio.h"
#include "frmmain.h"
#include "icons.h"
#include "reportservices.h"
#include "singleinstance.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QScreen>
#include <QTranslator>

namespace tv::shell {

void prepareApplication(QApplication& app)
{
    app.setOrganizationName(QStringLiteral("tejavista"));
    app.setApplicationName(QStringLiteral("tejavista"));
    app.setApplicationDisplayName(QStringLiteral("tejavista"));
    ui::ensureIconTheme();
    // Qt's own buttons and dialogs (file pickers, "Cancel") in Spanish.
    auto* qtTexts = new QTranslator(&app);
    if (qtTexts->load(QLocale(QLocale::Spanish, QLocale::Spain), QStringLiteral("qtbase"), QStringLiteral("_"),
                      QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(qtTexts);
}

int run(QApplication& app)
{
    // 1. Where the data lives, before anything else.
    DataPaths& paths = currentDataPaths();
    paths.dataPath = findDataPath(DataPathPlaces::standard());
    paths.networkPath = networkPathOf(paths.dataPath);

    // 2. The user's own locale for numbers and dates.
    QLocale::setDefault(QLocale::system());

    prepareApplication(app);
    reports::installReportServices();

    // A kill or a logout closes in order instead of cutting the connections.
    TerminationWatcher termination;
    QObject::connect(&termination, &TerminationWatcher::terminationRequested, &app,
                     [] { QApplication::closeAllWindows(); });

    // 3. One copy per user.
    SingleInstance instance;
    if (!instance.tryAcquire()) {
        ui::dialogs().information(QStringLiteral("La aplicación ya está arrancada"));
        return 0;
    }

    // 4. Splash, closed on its first tick.
    {
        TfrmInicio splash;
        splash.exec();
    }

    // 5. Data module, then the main window; the rest follows its first show.
    Tdm data(paths.dataPath);
    dm = &data;
    int code = 0;
    {
        TfrmMain frmMain(data);
        // The work area, also where no window manager maximises (a bare X server).
        if (const QScreen* screen = QGuiApplication::primaryScreen())
            frmMain.setGeometry(screen->availableGeometry());
        frmMain.showMaximized();
        code = app.exec();
    }
    dm = nullptr;
    return code;
}

} // namespace tv::shell
