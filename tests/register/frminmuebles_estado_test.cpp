// The property register's refusals and the state its boxes follow: a delete
// the database refuses keeps the photographs, the agent's restrictions hide
// their fields, the town picker fills the place, the poster boxes scroll from
// six lines, the search dialog's boxes and the sheet written to PDF.
#include "inmueblesfixture.h"

#include "frmbuscarinmueble.h"
#include "frmfotos.h"
#include "frmmunicipio.h"
#include "codesearchbinder.h"
#include "scripteddialogs.h"
#include "scriptedservices.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QtTest/QTest>

#include <ostream>

static void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}

using namespace tv;
using tv::test::Inmuebles;
using Kind = tv::test::ScriptedDialogs::Kind;

TEST_F(Inmuebles, UnBorradoRechazadoConservaLasFotos)
{
    for (int i = 1; i <= 2; ++i)
        Query::execute(datos.dm().Imagenes, datos.dm().Transacion,
                       QStringLiteral("INSERT INTO IMAGENES (ID, CODINMUEBLE) VALUES (%1, 10)").arg(i));
    datos.dm().Transacion.commitRetaining();
    abrir();
    // Another workstation changes the property after it was read.
    ejecutar(QStringLiteral("UPDATE INMUEBLES SET EUROIMPORTE = 1 WHERE CODIGO = '00010'"));
    test::ScriptedDialogs dialogos;
    dialogos.answer(true);
    pantalla->borrar();
    const auto log = dialogos.log();
    ASSERT_EQ(log.size(), 2);
    EXPECT_EQ(log[1].kind, Kind::Error);
    EXPECT_EQ(cuenta(datos.dm().Imagenes, QStringLiteral("SELECT COUNT(*) FROM IMAGENES WHERE CODINMUEBLE = 10")), 2);
    EXPECT_EQ(cuenta(datos.dm().datos, QStringLiteral("SELECT COUNT(*) FROM INMUEBLES WHERE CODIGO = '00010'")), 1);
    EXPECT_EQ(valor("CODIGO"), QStringLiteral("00010")); // the row is shown again
    // A later save of another property deletes nobody's photographs.
    ds().next();
    ds().edit();
    poner("EUROIMPORTE", 99000.0);
    dialogos.answer(true);
    EXPECT_TRUE(pantalla->grabar());
    dialogos.clear();
    EXPECT_EQ(cuenta(datos.dm().Imagenes, QStringLiteral("SELECT COUNT(*) FROM IMAGENES WHERE CODINMUEBLE = 10")), 2);
}

TEST_F(Inmuebles, LasRestriccionesDelAgenteOcultanSusDatos)
{
    ejecutar(QStringLiteral("UPDATE AGENTES SET OCULTARDATOSECONOMICOS = 'S', OCULTARDATOSINTERNOS = 'S' WHERE CODIGO = 2"));
    datos.dm().cargarAgente(2);
    abrir();
    for (const char* c : {"EUROMINIMO", "HONORARIO_PORCENTAJE", "HONORARIO_TOTAL", "OBSERVA_INTERNAS_TEXTO"})
        EXPECT_TRUE(pantalla->controlFor(QLatin1String(c))->isHidden()) << c;
    EXPECT_FALSE(pantalla->controlFor(QStringLiteral("EUROIMPORTE"))->isHidden());
    bool registroVisible = true;
    for (int i = 0; i < pantalla->paginas()->count(); ++i)
        if (pantalla->paginas()->tabText(i) == QStringLiteral("Registro"))
            registroVisible = pantalla->paginas()->isTabVisible(i);
    EXPECT_FALSE(registroVisible);

    pantalla.reset();
    datos.dm().cargarAgente(1);
    abrir();
    EXPECT_FALSE(pantalla->controlFor(QStringLiteral("EUROMINIMO"))->isHidden());
}

TEST_F(Inmuebles, LaPoblacionElegidaLlenaProvinciaYQuitaLaZona)
{
    abrir();
    ASSERT_EQ(valor("CODIGO"), QStringLiteral("00010"));
    ds().edit();
    poner("CODTIPOZONA", 3);
    ds().post();
    lookups::TfrmMunicipio::setModalRunner([](QDialog& d) {
        auto* picker = qobject_cast<lookups::TfrmMunicipio*>(&d);
        EXPECT_TRUE(picker);
        QTest::keyClicks(picker->edBuscar(), QStringLiteral("Zarago"));
        picker->btnAceptar()->click();
        return d.result();
    });
    pantalla->elegirPoblacion();
    lookups::TfrmMunicipio::setModalRunner({});
    EXPECT_EQ(valor("MUNICIPIO").trimmed(), QStringLiteral("Zaragoza"));
    EXPECT_EQ(valor("PROVINCIA").trimmed(), QStringLiteral("Zaragoza"));
    EXPECT_TRUE(ds().fieldByName(QStringLiteral("CODTIPOZONA")).isNull());
    EXPECT_TRUE(ds().isEditing());
    ds().cancel();
    ds().cancelUpdates();
}

TEST_F(Inmuebles, LosCartelesTienenBarraDesdeSeisLineas)
{
    abrir();
    auto* texto = pantalla->findChild<QPlainTextEdit*>(QStringLiteral("informacionCastellano"));
    ASSERT_TRUE(texto);
    ds().edit();
    texto->setPlainText(QStringLiteral("1\n2\n3\n4\n5"));
    EXPECT_EQ(texto->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    texto->setPlainText(QStringLiteral("1\n2\n3\n4\n5\n6"));
    EXPECT_EQ(texto->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOn);
    ds().cancel();
}

TEST_F(Inmuebles, ElDialogoDeBusquedaSoloCuentaLasFechasMarcadas)
{
    registro::TfrmBuscarInmueble dlg(datos.dm());
    dlg.calle()->setText(QStringLiteral("Mayor"));
    dlg.desde()->setDate(QDate(2026, 1, 1));
    dlg.hasta()->setDate(QDate(2026, 2, 1));
    registro::FiltroInmuebles f = dlg.filtro();
    EXPECT_FALSE(f.desde.isValid());
    EXPECT_FALSE(dlg.desde()->isEnabled());
    dlg.entreFechas()->setChecked(true);
    EXPECT_TRUE(dlg.desde()->isEnabled());
    dlg.soloExclusivas()->setChecked(true);
    QTest::keyClicks(dlg.propietario()->codeEdit(), QStringLiteral("5"));
    EXPECT_TRUE(dlg.propietario()->takeTypedCode());
    f = dlg.filtro();
    EXPECT_EQ(registro::condicionBusqueda(f),
              QStringLiteral(" WHERE CODPROPIETARIO = 5 AND NOMBREVIA LIKE '%Mayor%' AND ((FECHAALTA >= '01.01.2026' AND "
                             "FECHAALTA <= '01.02.2026') OR (FECHAALTA IS NULL))  and activado ='S'  and exclusiva ='S' "));
}

TEST_F(Inmuebles, LaFichaSeExportaAPdf)
{
    abrir();
    test::ScriptedServices servicios;
    const QString destino = mCarpeta.filePath(QStringLiteral("ficha"));
    servicios.fileAnswer(destino);
    pantalla->exportarFichaPdf();
    ASSERT_EQ(servicios.calls().size(), 1);
    QFile pdf(destino + QStringLiteral(".pdf"));
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    EXPECT_TRUE(pdf.read(5).startsWith("%PDF"));
}

TEST_F(Inmuebles, LasFotosDeOtroAgenteSoloSeVen)
{
    datos.dm().cargarAgente(2);
    abrir();
    bool anadirActivo = true;
    QString titulo;
    registro::TfrmFotos::setModalRunner([&](QDialog& d) {
        auto* f = qobject_cast<registro::TfrmFotos*>(&d);
        EXPECT_TRUE(f);
        titulo = d.windowTitle();
        anadirActivo = f->btnAnadir()->isEnabled();
        return 0;
    });
    pantalla->verFotos(); // 00010 belongs to agent 1
    EXPECT_EQ(titulo, QStringLiteral("Fotografías del inmueble 00010"));
    EXPECT_FALSE(anadirActivo);
    ds().next(); // his own
    pantalla->verFotos();
    EXPECT_TRUE(anadirActivo);
    registro::TfrmFotos::setModalRunner({});
}

TEST_F(Inmuebles, UnoNuevoGuardaSusTextosRusosEnElAlta)
{
    abrir();
    test::ScriptedDialogs dialogos;
    pantalla->nuevo();
    poner("CODTIPOINMUEBLE", 1);
    poner("MUNICIPIO", QStringLiteral("Ajalvir"));
    poner("CODTIPOOPERACION", 1);
    poner("EUROIMPORTE", 1000.0);
    poner("CODPROPIETARIO", 5);
    pantalla->rusoInformacion()->setPlainText(QStringLiteral("Новая квартира"));
    dialogos.answer(true);
    ASSERT_TRUE(pantalla->grabar());
    EXPECT_EQ(dialogos.texts(), QStringList{tv::test::kGrabar});
    EXPECT_EQ(enBase(QStringLiteral("00021"), "CARTELES_INFORMARUS").toString(), QStringLiteral("Новая квартира"));
    // Changing it afterwards goes through the Russian statement.
    pantalla->rusoInformacion()->setPlainText(QStringLiteral("Квартира"));
    dialogos.answer(true);
    ASSERT_TRUE(pantalla->grabar());
    dialogos.clear();
    EXPECT_EQ(enBase(QStringLiteral("00021"), "CARTELES_INFORMARUS").toString(), QStringLiteral("Квартира"));
}

TEST_F(Inmuebles, LaCopiaEsDelAgenteQueLaHaceYSeVeAunqueHayaFiltro)
{
    datos.dm().cargarAgente(2);
    abrir();
    registro::FiltroInmuebles f;
    f.expediente = QStringLiteral("10");
    pantalla->aplicarFiltro(f);
    ASSERT_EQ(valor("CODIGO"), QStringLiteral("00010")); // agent 1's
    test::ScriptedDialogs dialogos;
    dialogos.answer(true);
    pantalla->FlaTcxButton222Click();
    EXPECT_EQ(dialogos.texts().last(), QStringLiteral("Inmueble copiado correctamente"));
    EXPECT_EQ(valor("CODIGO"), QStringLiteral("00021"));
    EXPECT_FALSE(pantalla->filtrado());
    EXPECT_EQ(enBase(QStringLiteral("00021"), "CODAGENTE").toInt(), 2);
    EXPECT_EQ(enBase(QStringLiteral("00021"), "CODCAPTADOR").toInt(), 1);
}
