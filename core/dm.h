#pragma once

#include "currentagent.h"
#include "dberror.h"
#include "database.h"
#include "money.h"
#include "query.h"
#include "transaction.h"

namespace tv {

// The data module: the four connections, the one shared transaction and the
// shared queries. One per process, created before any screen; screens never
// open connections of their own. Lives on the interface thread.
class Tdm {
public:
    // dataPath: "folder" (local files) or "host:folder" (server); the three
    // files always lie in its DATOS subfolder.
    explicit Tdm(const QString& dataPath);
    ~Tdm();
    Tdm(const Tdm&) = delete;
    Tdm& operator=(const Tdm&) = delete;

    QString dataPath() const { return mDataPath; }
    void setDataPath(const QString& path) { mDataPath = path; }
    // The folder of the data path on this machine's file system.
    QString dataFolder() const;
    bool isLocal() const;

    Database datos;
    Database Imagenes;
    Database dbInformes;
    Database datosrusos;
    Transaction Transacion;

    Query qConsulta;
    Query qryBuscar;
    Query qryinmueble;
    Query qryDatosMandato;
    Query qryDatos_Swift;
    Query qryTrabajo;
    Query qryAvisos;

    CurrentAgent agente;

    // Opens datos, datosrusos, dbInformes and Imagenes in that order and starts
    // the shared transaction.
    void abrirConexiones();
    // Closes datos, Imagenes and dbInformes (committing what they hold).
    void cerrarConexiones();
    void cargarAgente(int codigo) { agente = CurrentAgent::load(datos, Transacion, codigo); }

    // Adds the thumbnail column to IMAGENES; an "already exists" answer is success.
    void actualizarImagenes();

    // Monthly instalment of a loan (annual rate in percent, years, amount).
    Money cuotaMensual(double interes, int anos, Money importe) const;

    static const QString kDatosFile;
    static const QString kImagenesFile;
    static const QString kInformesFile;

private:
    void datosBeforeConnect(Database& db);
    void ImagenesBeforeConnect(Database& db);
    void dbInformesBeforeConnect(Database& db);
    void datosrusosBeforeConnect(Database& db);

    QString mDataPath;
};

// The process's data module (null before it is created).
inline Tdm* dm = nullptr;

} // namespace tv
