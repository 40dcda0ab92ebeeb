#include "report.h"

#include "desktophooks.h"
#include "dialogs.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

namespace tv::reports {

namespace {

UrlOpener& urlOpener()
{
    static UrlOpener opener;
    return opener;
}

ProgramStarter& programStarter()
{
    static ProgramStarter starter;
    return starter;
}

bool startProgram(const QString& program, const QStringList& arguments)
{
    if (programStarter())
        return programStarter()(program, arguments);
    if (QStandardPaths::findExecutable(program).isEmpty())
        return false;
    return QProcess::startDetached(program, arguments);
}

bool hasScheme(const QString& target, const char* scheme)
{
    return target.startsWith(QLatin1String(scheme), Qt::CaseInsensitive);
}

} // namespace

bool launchUrl(const QUrl& url)
{
    if (urlOpener())
        return urlOpener()(url);
    return QDesktopServices::openUrl(url);
}

void setUrlOpener(UrlOpener opener)
{
    urlOpener() = std::move(opener);
}

void setProgramStarter(ProgramStarter starter)
{
    programStarter() = std::move(starter);
}

bool openWithDesktop(const QString& target, QWidget* parent)
{
    const QString t = target.trimmed();
    if (t.isEmpty()) {
        ui::dialogs().warning(QStringLiteral("No se ha indicado qué abrir."), parent);
        return false;
    }
    if (hasScheme(t, "mailto:")) {
        if (t.size() <= 7) {
            ui::dialogs().warning(QStringLiteral("No ha indicado la cuenta de correo"), parent);
            return false;
        }
        if (launchUrl(QUrl(t)))
            return true;
        ui::dialogs().error(QStringLiteral("No se ha podido abrir el programa de correo para escribir a %1.\n"
                                           "Compruebe que tiene un programa de correo instalado.")
                                .arg(t.mid(7)),
                            parent);
        return false;
    }
    if (hasScheme(t, "http://") || hasScheme(t, "https://") || hasScheme(t, "ftp://") || hasScheme(t, "www.")) {
        const QUrl url = hasScheme(t, "www.") ? QUrl(QStringLiteral("http://") + t) : QUrl(t);
        if (launchUrl(url))
            return true;
        ui::dialogs().error(QStringLiteral("No se ha podido abrir la dirección %1.\n"
                                           "Compruebe que tiene un navegador instalado.")
                                .arg(t),
                            parent);
        return false;
    }
    QString path = t;
    if (hasScheme(t, "file:"))
        path = QUrl(t).toLocalFile();
    path = QDir::fromNativeSeparators(path);
    const QFileInfo info(path);
    if (!info.exists()) {
        ui::dialogs().error(QStringLiteral("No existe el fichero o la carpeta %1").arg(QDir::toNativeSeparators(path)),
                            parent);
        return false;
    }
    if (launchUrl(QUrl::fromLocalFile(info.absoluteFilePath())))
        return true;
    if (info.isDir())
        ui::dialogs().error(
            QStringLiteral("No se ha podido abrir la carpeta %1.").arg(QDir::toNativeSeparators(info.absoluteFilePath())),
            parent);
    else
        ui::dialogs().error(QStringLiteral("No se ha podido abrir el fichero %1.\n"
                                           "No hay ningún programa asociado a los ficheros de tipo \"%2\".")
                                .arg(QDir::toNativeSeparators(info.absoluteFilePath()), info.suffix()),
                            parent);
    return false;
}

QStringList calculatorPrograms()
{
    return {QStringLiteral("gnome-calculator"), QStringLiteral("kcalc"), QStringLiteral("galculator"),
            QStringLiteral("mate-calc"), QStringLiteral("xcalc")};
}

bool openCalculator(QWidget* parent)
{
    for (const QString& program : calculatorPrograms())
        if (startProgram(program, {}))
            return true;
    ui::dialogs().error(QStringLiteral("No se ha podido abrir la calculadora.\n"
                                       "Instale una calculadora de escritorio (por ejemplo gnome-calculator o kcalc)."),
                        parent);
    return false;
}

} // namespace tv::reports
