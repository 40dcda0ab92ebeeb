#include "desktop.h"

#include "dialogs.h"
#include "report.h"

#include <QDir>

namespace tv::shell {

QString carpetaAplicacion()
{
    return reports::applicationFolder();
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
    return reports::openWithDesktop(path, parent);
}

bool abrirCalculadora(QWidget* parent)
{
    return reports::openCalculator(parent);
}

} // namespace tv::shell
