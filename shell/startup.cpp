#include "startup.h"

#include "datapath.h"

#include <QFileInfo>

namespace tv::shell::startup {

QString carpetaDocumentos(const QString& docuRed, const QString& dataFolder, const QString& networkPath)
{
    if (docuRed.trimmed() == QLatin1String("S") && !networkPath.isEmpty())
        return networkPath;
    return dataFolder;
}

QString carpetaPlantillas(const QString& appFolder, int idioma)
{
    const QString base = appFolder + QStringLiteral("/plantillas");
    return idioma == 1 ? base + QStringLiteral("/cat") : base;
}

bool modoLocal(const QString& dataFolder)
{
    return QFileInfo::exists(dataFolder + QLatin1Char('/') + kLocalMarker);
}

QString tituloVentana(const QString& usuario)
{
    return QStringLiteral("tejavista - USUARIO ") + usuario;
}

} // namespace tv::shell::startup
