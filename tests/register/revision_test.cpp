// The property register under review: what an agent types is kept, a save
// lands whole, another agent's property stays as it is whatever path the
// change takes, and a delete takes no more than the property's own.
#include "inmueblesfixture.h"

#include "frmdocumentos.h"
#include "scripteddialogs.h"
#include "scriptedservices.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QPlainTextEdit>
#include <gtest/gtest.h>

#include <ostream>

static void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}

using namespace tv;
using tv::test::kGrabar;
using tv::test::kNoModificar;

namespace {

class RevisionInmuebles : public tv::test::Inmuebles {};

} // namespace

// A save whose Russian part the database refuses stores nothing: neither the
// row's other changes (not even once something else commits) nor the texts,
// and the record is still there to be corrected and saved.
TEST_F(RevisionInmuebles, UnGrabadoConElRusoRechazadoNoGuardaMedioRegistro)
{
    abrir();
    test::ScriptedDialogs dialogos;
    ds().edit();
    poner("EUROIMPORTE", 175000.0);
    // The header holds 150 characters; this one is longer.
    pantalla->rusoCabecera()->setPlainText(QString(200, QChar(0x0416)));
    dialogos.answer(true);
    EXPECT_FALSE(pantalla->grabar());
    const auto log = dialogos.log();
    ASSERT_EQ(log.size(), 2);
    EXPECT_EQ(log[0].text, kGrabar);
    EXPECT_EQ(log[1].kind, test::ScriptedDialogs::Kind::Error);
    // Whatever commits the shared transaction next (any other save).
    datos.dm().Transacion.commitRetaining();
    EXPECT_DOUBLE_EQ(enBase(QStringLiteral("00010"), "EUROIMPORTE").toDouble(), 150000.0);
    EXPECT_TRUE(enBase(QStringLiteral("00010"), "CARTELES_CABECERARUS").toString().isEmpty());
    EXPECT_TRUE(pantalla->isActionEnabled(ui::RecordScreen::Action::Grabar));
}

// Generating the poster text writes the property's row: on another agent's
// property it is refused like any other change.
TEST_F(RevisionInmuebles, ElCartelDeUnInmuebleAjenoNoSeGenera)
{
    datos.dm().cargarAgente(2);
    abrir();
    test::ScriptedDialogs dialogos;
    ASSERT_EQ(valor("CODIGO"), QStringLiteral("00010")); // agent 1's
    QAction* generar = pantalla->accion(QStringLiteral("Generar cartel"));
    ASSERT_TRUE(generar);
    ASSERT_TRUE(generar->isEnabled());
    generar->trigger();
    EXPECT_EQ(dialogos.texts(), QStringList{kNoModificar});
    EXPECT_TRUE(enBase(QStringLiteral("00010"), "CARTELES_INFORMACION").isNull());
}

// Publishing on the agency's web and taking a property off it change the
// row: on another agent's property both are refused, before any question.
TEST_F(RevisionInmuebles, LaWebDeUnInmuebleAjenoNoSeCambia)
{
    ejecutar(QStringLiteral("UPDATE INMUEBLES SET SUBIR_INTERNET = 'N' WHERE CODIGO = '00010'"));
    datos.dm().cargarAgente(2);
    abrir();
    test::ScriptedDialogs dialogos;
    ASSERT_EQ(valor("CODIGO"), QStringLiteral("00010")); // agent 1's
    pantalla->accion(QStringLiteral("Publicar en mi web"))->trigger();
    EXPECT_EQ(dialogos.texts(), QStringList{kNoModificar});
    dialogos.clear();
    EXPECT_EQ(enBase(QStringLiteral("00010"), "SUBIR_INTERNET").toString(), QStringLiteral("N"));

    ejecutar(QStringLiteral("UPDATE INMUEBLES SET SUBIR_INTERNET = 'S' WHERE CODIGO = '00010'"));
    ds().refreshRecord();
    pantalla->accion(QStringLiteral("Quitar de mi web"))->trigger();
    EXPECT_EQ(dialogos.texts(), QStringList{kNoModificar});
    EXPECT_EQ(enBase(QStringLiteral("00010"), "SUBIR_INTERNET").toString(), QStringLiteral("S"));
}

// The whole portfolio's poster texts are this workstation's own work: the
// next change to any listed property saves, not taken for another user's.
TEST_F(RevisionInmuebles, TrasLosCartelesDeLaCarteraOtroInmuebleSeGraba)
{
    ejecutar(QStringLiteral("UPDATE INMUEBLES SET CSUPER1 = 500, CHABDOBLES = 3 WHERE ACTIVADO = 'S'"));
    abrir();
    ds().fetchAll();
    ASSERT_EQ(ds().recordCount(), 2);
    test::ScriptedDialogs dialogos;
    dialogos.answer(true);
    pantalla->accion(QStringLiteral("Carteles de toda la cartera"))->trigger();
    ASSERT_EQ(dialogos.log().size(), 2);
    dialogos.clear();
    ASSERT_FALSE(enBase(QStringLiteral("00011"), "CARTELES_INFORMACION").toString().isEmpty());

    pantalla->siguiente();
    ASSERT_EQ(valor("CODIGO"), QStringLiteral("00011"));
    ds().edit();
    poner("EUROIMPORTE", 99000.0);
    dialogos.answer(true);
    EXPECT_TRUE(pantalla->grabar());
    EXPECT_EQ(dialogos.texts(), QStringList{kGrabar});
    EXPECT_DOUBLE_EQ(enBase(QStringLiteral("00011"), "EUROIMPORTE").toDouble(), 99000.0);
}

// A stored property keeps its expediente: saving another change never
// rewrites the code its follow-ups and operations are filed under (a code
// stored unpadded, as older data may hold it).
TEST_F(RevisionInmuebles, GrabarNoCambiaElExpedienteDeUnInmuebleGuardado)
{
    propiedad(QStringLiteral("7"), 1, 1, QStringLiteral("'S'"));
    ejecutar(QStringLiteral("INSERT INTO GESTIONES (CODIGO, CODINMUEBLE) VALUES (1, '7')"));
    abrir();
    test::ScriptedDialogs dialogos;
    ASSERT_TRUE(ds().locate(QStringLiteral("CODIGO"), QStringLiteral("7"), DataSet::PartialKey));
    ds().edit();
    poner("EUROIMPORTE", 120000.0);
    dialogos.answer(true);
    EXPECT_TRUE(pantalla->grabar());
    EXPECT_EQ(dialogos.texts(), QStringList{kGrabar});
    EXPECT_DOUBLE_EQ(enBase(QStringLiteral("7"), "EUROIMPORTE").toDouble(), 120000.0);
    EXPECT_EQ(cuenta(datos.dm().datos, QStringLiteral("SELECT COUNT(*) FROM INMUEBLES I JOIN GESTIONES G "
                                                      "ON G.CODINMUEBLE = I.CODIGO")),
              1);
}

// An expediente is text: one with a letter in it is listed and shown like
// any other, never an exception out of the screen (which ends the program).
TEST_F(RevisionInmuebles, UnExpedienteConLetraSeMuestraSinFallar)
{
    propiedad(QStringLiteral("0012B"), 1, 1, QStringLiteral("'S'"));
    abrir();
    ds().fetchAll();
    ASSERT_EQ(ds().recordCount(), 3);
    EXPECT_NO_THROW(pantalla->siguiente());
    EXPECT_NO_THROW(pantalla->siguiente());
    EXPECT_EQ(valor("CODIGO"), QStringLiteral("0012B"));
}

// The photographs of a property whose code is not a number: there are none
// to delete, and another property's stay.
TEST_F(RevisionInmuebles, BorrarLasFotosDeUnExpedienteNoNumericoNoQuitaAjenas)
{
    propiedad(QStringLiteral("00000"), 1, 1, QStringLiteral("'S'"));
    propiedad(QStringLiteral("0001A"), 1, 1, QStringLiteral("'S'"));
    for (int i = 1; i <= 2; ++i)
        Query::execute(datos.dm().Imagenes, datos.dm().Transacion,
                       QStringLiteral("INSERT INTO IMAGENES (ID, CODINMUEBLE) VALUES (%1, 0)").arg(i));
    datos.dm().Transacion.commitRetaining();
    try {
        registro::borrarFotos(datos.dm(), QStringLiteral("0001A"));
    } catch (const std::exception&) {
        // Refusing is as good as deleting nothing.
    }
    datos.dm().Transacion.commitRetaining();
    EXPECT_EQ(cuenta(datos.dm().Imagenes, QStringLiteral("SELECT COUNT(*) FROM IMAGENES WHERE CODINMUEBLE = 0")), 2);
}

// Adding a document under a name the folder already holds replaces it only
// once the new one is in: a copy that fails keeps the one there was.
TEST_F(RevisionInmuebles, UnDocumentoQueNoSePuedeSustituirSeConserva)
{
    QDir carpeta(mCarpeta.filePath(QStringLiteral("ARCHIVOS/INMUEBLES/00010")));
    ASSERT_TRUE(carpeta.mkpath(QStringLiteral(".")));
    const QString contrato = carpeta.filePath(QStringLiteral("contrato.pdf"));
    {
        QFile f(contrato);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("%PDF firmado");
    }
    registro::TfrmDocumentos dlg(carpeta.path(), QStringLiteral("Documentación adjunta al Inmueble 00010"));
    test::ScriptedDialogs dialogos;
    test::ScriptedServices servicios;
    // The user picks the very file the folder holds: nothing to replace.
    servicios.fileAnswer(contrato);
    EXPECT_FALSE(dlg.anadir());
    EXPECT_EQ(servicios.calls().size(), 1);
    EXPECT_EQ(dialogos.texts(), QStringList{QStringLiteral("El documento contrato.pdf ya está en la carpeta.")});
    EXPECT_TRUE(QFile::exists(contrato));
    EXPECT_EQ(dlg.archivos(), QStringList{QStringLiteral("contrato.pdf")});
}

// The Russian texts are part of the record: saving a header typed here does
// not wipe the text another workstation stored since this one read it.
TEST_F(RevisionInmuebles, ElTextoRusoDeOtroPuestoNoSeBorraAlGrabar)
{
    abrir();
    test::ScriptedDialogs dialogos;
    ASSERT_EQ(valor("CODIGO"), QStringLiteral("00010"));
    // Another workstation writes the Russian text after this one showed the row.
    ejecutar(QStringLiteral("UPDATE INMUEBLES SET CARTELES_INFORMARUS = 'Квартира у моря' WHERE CODIGO = '00010'"));
    pantalla->rusoCabecera()->setPlainText(QStringLiteral("ПРОДАЁТСЯ"));
    dialogos.answer(true);
    pantalla->grabar();
    dialogos.log();
    datos.dm().Transacion.commitRetaining();
    EXPECT_EQ(enBase(QStringLiteral("00010"), "CARTELES_INFORMARUS").toString(), QStringLiteral("Квартира у моря"));
}
