#include "datafolder.h"

#include "database.h"
#include "datapath.h"
#include "dm.h"
#include "sqlscript.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace tv {

QString bundledSql(const QString& name)
{
    QFile f(QStringLiteral(":/sql/") + name);
    if (!f.open(QIODevice::ReadOnly))
        throw DataFolderError(QStringLiteral("No se encuentra el guion %1").arg(name));
    return QString::fromUtf8(f.readAll());
}

bool folderHasData(const QString& folder)
{
    for (const QString& f : {Tdm::kDatosFile, Tdm::kImagenesFile, Tdm::kInformesFile})
        if (QFileInfo::exists(folder + f))
            return true;
    return false;
}

void createDataFolder(const QString& folder, const DataFolderOptions& options)
{
    const QString dir = QDir(folder).absolutePath();
    if (folderHasData(dir))
        throw DataFolderError(
            QStringLiteral("La carpeta %1 ya contiene datos; no se ha modificado nada.").arg(dir));
    QDir root(dir);
    for (const char* sub : {"DATOS", "ARCHIVOS/INMUEBLES", "ARCHIVOS/CLIENTES", "ARCHIVOS/PROPIETARIOS",
                            "ARCHIVOS/PROMOCIONES"})
        if (!root.mkpath(QLatin1String(sub)))
            throw DataFolderError(QStringLiteral("No se puede crear la carpeta %1/%2").arg(dir, QLatin1String(sub)));

    // A failure half-way removes what this call made, so trying again works.
    QStringList created;
    try {
        for (const QString& f : {Tdm::kDatosFile, Tdm::kImagenesFile, Tdm::kInformesFile}) {
            Database::create(dir + f);
            created << dir + f;
        }
        Tdm data(dir);
        data.datos.open();
        data.Imagenes.open();
        data.dbInformes.open();
        runSqlScript(data.datos, data.Transacion, bundledSql(QStringLiteral("datos.sql")));
        runSqlScript(data.datos, data.Transacion, bundledSql(QStringLiteral("datos_seed.sql")));
        if (options.seedMunicipios)
            runSqlScript(data.datos, data.Transacion, bundledSql(QStringLiteral("municipios.sql")));
        runSqlScript(data.Imagenes, data.Transacion, bundledSql(QStringLiteral("imagenes.sql")));
        data.actualizarImagenes();
        runSqlScript(data.dbInformes, data.Transacion, bundledSql(QStringLiteral("listados.sql")));
        data.Transacion.commit();
        if (options.fill) {
            options.fill(data);
            data.Transacion.commit();
        }
        data.cerrarConexiones();
    } catch (...) {
        // The data module is gone here, and with it every attachment.
        for (const QString& f : created)
            QFile::remove(f);
        throw;
    }
    if (options.localMarker) {
        QFile marker(dir + QLatin1Char('/') + kLocalMarker);
        if (marker.open(QIODevice::WriteOnly))
            marker.write("Marca de modo local: los ficheros de DATOS se abren en este equipo.\n");
    }
}

} // namespace tv
