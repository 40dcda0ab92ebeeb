#pragma once

// The property register's test fixture: two agents, two owners, three
// properties (one inactive) on a fresh database, and the screen over them.
#include "frminmuebles.h"

#include "gridsettings.h"
#include "modal.h"
#include "query.h"
#include "report.h"
#include "sqltext.h"
#include "testdata.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <memory>

namespace tv::test {

using registro::TfrmInmuebles;

inline const QString kGrabar = QStringLiteral("¿Está seguro de grabar los cambios?");
inline const QString kNoModificar =
    QStringLiteral("No tiene privilegios para modificar este inmueble debido a que pertenece a otro agente");
inline const QString kNoEliminar =
    QStringLiteral("No tiene privilegios para eliminar este inmueble debido a que pertenece a otro agente");

class Inmuebles : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(mCarpeta.isValid());
        ui::GridSettings::setStorageFile(mCarpeta.filePath(QStringLiteral("rejillas.ini")));
        ejecutar(QStringLiteral("INSERT INTO AGENTES (CODIGO, APEYNOM, USUARIO, ADMINISTRADOR) VALUES (1, 'ANA', 'ana', 'N')"));
        ejecutar(QStringLiteral("INSERT INTO AGENTES (CODIGO, APEYNOM, USUARIO, ADMINISTRADOR) VALUES (2, 'LUIS', 'luis', 'N')"));
        ejecutar(QStringLiteral("INSERT INTO PROPIETARIOS (CODIGO, APEYNOM, DIR, DIRSIGLA, PAIS, POB, PROVINCIA, TEL_MOVIL, "
                                "TEL_TRABAJO) VALUES (5, 'GARCIA LOPEZ, MARIA', 'Mayor 1', 'C', 'ESPAÑA', 'Madrid', "
                                "'Madrid', '600111222', '910000000')"));
        ejecutar(QStringLiteral("INSERT INTO PROPIETARIOS (CODIGO, APEYNOM, DIR, DIRSIGLA, PAIS, POB, PROVINCIA, TEL) "
                                "VALUES (6, 'PEREZ, JUAN', 'Sol 2', 'C', 'ESPAÑA', 'Madrid', 'Madrid', '915551234')"));
        propiedad(QStringLiteral("00010"), 1, 1, QStringLiteral("'S'"));
        propiedad(QStringLiteral("00011"), 16, 2, QStringLiteral("'S'"));
        propiedad(QStringLiteral("00012"), 1, 1, QStringLiteral("'N'")); // inactive: never listed
        ejecutar(QStringLiteral("SET GENERATOR GEN_INMUEBLES TO 20"));
    }

    void TearDown() override
    {
        pantalla.reset();
        registro::setEjecutorModal({});
        reports::setUrlOpener({});
        ui::GridSettings::setStorageFile({});
    }

    void ejecutar(const QString& text)
    {
        Query::execute(datos.dm().datos, datos.dm().Transacion, text);
        datos.dm().Transacion.commitRetaining();
    }

    void propiedad(const QString& codigo, int tipo, int agente, const QString& activo)
    {
        ejecutar(QStringLiteral("INSERT INTO INMUEBLES (CODIGO, CODTIPOINMUEBLE, CODTIPOOPERACION, ACTIVADO, CODAGENTE, "
                                "CODCAPTADOR, CODPROPIETARIO, MUNICIPIO, PROVINCIA, EUROIMPORTE, NOMBREVIA, "
                                "NOMBRE_APARTAMENTO, GOOGLE_MAPS_MANUAL) VALUES (%1, %2, 1, %3, %4, %4, 5, 'Ajalvir', "
                                "'Madrid', 150000, 'Mayor', 'Las Dunas', 'N')")
                     .arg(sql::quote(codigo))
                     .arg(tipo)
                     .arg(activo)
                     .arg(agente));
    }

    void abrir(int propietario = 0)
    {
        pantalla = std::make_unique<TfrmInmuebles>(datos.dm(), nullptr, propietario);
        pantalla->show();
    }

    DataSet& ds() { return *pantalla->dataSet(); }
    QString valor(const char* c) { return ds().fieldByName(QLatin1String(c)).asString(); }
    void poner(const char* c, const QVariant& v) { ds().fieldByName(QLatin1String(c)).setValue(v); }

    QVariant enBase(const QString& codigo, const char* columna)
    {
        return Query::scalar(datos.dm().datos, datos.dm().Transacion,
                             QStringLiteral("SELECT %1 FROM INMUEBLES WHERE CODIGO = %2")
                                 .arg(QLatin1String(columna), sql::quote(codigo)));
    }
    int cuenta(Database& db, const QString& sqlText)
    {
        return Query::scalar(db, datos.dm().Transacion, sqlText).toInt();
    }

    QTemporaryDir mCarpeta;
    test::TestData datos;
    std::unique_ptr<TfrmInmuebles> pantalla;
};


} // namespace tv::test
