#include "desktop.h"

#include "dialogs.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

#ifdef TEJAVISTA_WITH_REPORTS
#include "report.h"
#endif

namespace tv::shell {

QString carpetaAplicacion()
{
#ifdef TEJAVISTA_WITH_REPORTS
    return reports::applicationFolder();
#else
    const QString fromEnv = qEnvironmentVariable("TEJAVISTA_APP_DIR");
    if (!fromEnv.isEmpty())
        return QDir(fromEnv).absolutePath();
    const QString installed = QStringLiteral("/usr/share/tejavista");
    if (QFileInfo(installed + QStringLiteral("/informes")).isDir())
        return installed;
#ifdef TEJAVISTA_SOURCE_DIR
    return QStringLiteral(TEJAVISTA_SOURCE_DIR);
#else
    return QDir::currentPath();
#endif
#endif
}

QString rutaManual()
{
    const QDir dir(carpetaAplicacion() + QStringLiteral("/manual"));
    const QStringList pdfs = dir.entryList({QStringLiteral("*.pdf")}, QDir::Files, QDir::Name);
    return pdfs.isEmpty() ? QString() : dir.absoluteFilePath(pdfs.first());
}

bool abrirManual(QWidget* parent)
{
    const QString path = rutaManual();
    if (path.isEmpty()) {
        ui::dialogs().error(QStringLiteral("No se encuentra el manual de usuario en la carpeta %1.")
                                .arg(QDir::toNativeSeparators(carpetaAplicacion() + QStringLiteral("/manual"))),
                            parent);
        return false;
    }
#ifdef TEJAVISTA_WITH_REPORTS
    return reports::openWithDesktop(path, parent);
#else
    if (QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        return true;
    ui::dialogs().error(QStringLiteral("No se ha podido abrir el manual %1.\n"
                                       "Compruebe que tiene instalado un visor de documentos PDF.")
                            .arg(QDir::toNativeSeparators(path)),
                        parent);
    return false;
#endif
}

bool abrirCalculadora(QWidget* parent)
{
#ifdef TEJAVISTA_WITH_REPORTS
    return reports::openCalculator(parent);
#else
    for (const char* program : {"gnome-calculator", "kcalc", "galculator", "mate-calc", "xcalc"}) {
        const QString exe = QStandardPaths::findExecutable(QString::fromLatin1(program));
        if (!exe.isEmpty() && QProcess::startDetached(exe, {}))
            return true;
    }
    ui::dialogs().error(QStringLiteral("No se ha podido abrir la calculadora.\n"
                                       "Instale una calculadora de escritorio (por ejemplo gnome-calculator o kcalc)."),
                        parent);
    return false;
#endif
}

} // namespace tv::shell
