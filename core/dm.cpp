#include "dm.h"

#include "datapath.h"
#include "instalment.h"

namespace tv {

const QString Tdm::kDatosFile = QStringLiteral("/DATOS/datisp68.IB");
const QString Tdm::kImagenesFile = QStringLiteral("/DATOS/imagenes.IB");
const QString Tdm::kInformesFile = QStringLiteral("/DATOS/LISTADOSI.IB");

Tdm::Tdm(const QString& dataPath) : mDataPath(dataPath)
{
    datos.beforeConnect = [this](Database& db) { datosBeforeConnect(db); };
    Imagenes.beforeConnect = [this](Database& db) { ImagenesBeforeConnect(db); };
    dbInformes.beforeConnect = [this](Database& db) { dbInformesBeforeConnect(db); };
    datosrusos.beforeConnect = [this](Database& db) { datosrusosBeforeConnect(db); };

    auto wire = [this](Query& q, const QString& sql) {
        q.setDatabase(datos);
        q.setTransaction(Transacion);
        if (!sql.isEmpty())
            q.setSQL(sql);
    };
    wire(qConsulta, QStringLiteral("SELECT D.*,C.APEYNOM FROM DEMANDAS D , CLIENTES C\n"
                                   "WHERE D.CODCLIENTE = C.CODIGO"));
    wire(qryBuscar, QStringLiteral("select codigo,municipio, codtipozona,euroimporte from inmuebles"));
    wire(qryinmueble, QStringLiteral("select i.codtipooperacion , i.euroimporte , i.codtipoinmueble, "
                                     "i.municipio,i.codtipozona from inmuebles i\nwhere codigo =:codigo"));
    wire(qryDatosMandato,
         QStringLiteral("select max(fecha_mandato) -1 from inmuebles where refdomici =:refdomici"));
    wire(qryDatos_Swift, QStringLiteral("select swift from comun_bancos where codbanco =:banco "));
    wire(qryTrabajo, {});
    wire(qryAvisos, {});
    if (!dm)
        dm = this;
}

Tdm::~Tdm()
{
    try {
        Transacion.commit();
    } catch (const DatabaseError&) {
    }
    if (dm == this)
        dm = nullptr;
}

QString Tdm::dataFolder() const
{
    return dataFolderOf(mDataPath);
}

bool Tdm::isLocal() const
{
    return isLocalDataPath(mDataPath);
}

void Tdm::datosBeforeConnect(Database& db)
{
    db.setDatabaseName(mDataPath + kDatosFile);
}

void Tdm::ImagenesBeforeConnect(Database& db)
{
    db.setDatabaseName(mDataPath + kImagenesFile);
}

void Tdm::dbInformesBeforeConnect(Database& db)
{
    db.setDatabaseName(mDataPath + kInformesFile);
}

void Tdm::datosrusosBeforeConnect(Database& db)
{
    db.setDatabaseName(mDataPath + kDatosFile);
    db.setLcCtype(QStringLiteral("UTF8"));
}

void Tdm::abrirConexiones()
{
    datos.open();
    datosrusos.open();
    dbInformes.open();
    Imagenes.open();
    Transacion.handleFor(datos);
}

void Tdm::cerrarConexiones()
{
    datos.close();
    Imagenes.close();
    dbInformes.close();
}

void Tdm::actualizarImagenes()
{
    try {
        Query::execute(Imagenes, Transacion,
                       QStringLiteral("ALTER TABLE imagenes ADD PICTURE_MINI BLOB SUB_TYPE 0 SEGMENT SIZE 80 "));
        Transacion.commitRetaining();
    } catch (const DatabaseError& e) {
        if (!e.isAlreadyExists())
            throw;
    }
}

Money Tdm::cuotaMensual(double interes, int anos, Money importe) const
{
    return calculaCuota(interes, anos, importe);
}

} // namespace tv
