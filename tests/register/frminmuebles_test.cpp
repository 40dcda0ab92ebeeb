// The property register on a real database: what a new property starts
// with, the checks in their order, what a save stores, the agent rule, what
// a delete removes, the search, copying, the web and video commands and the
// printed reports.
#include "inmueblesfixture.h"

#include "codesearchbinder.h"
#include "commands.h"
#include "datagrid.h"
#include "enlaces.h"
#include "frmbuscarinmueble.h"
#include "gridsettings.h"
#include "modal.h"
#include "query.h"
#include "register.h"
#include "report.h"
#include "scripteddialogs.h"
#include "scriptedservices.h"
#include "sqltext.h"
#include "testdata.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QToolBar>
#include <QUrl>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include <ostream>

static void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}

using namespace tv;
using registro::TfrmInmuebles;
using Kind = tv::test::ScriptedDialogs::Kind;

using tv::test::Inmuebles;
using tv::test::kGrabar;
using tv::test::kNoModificar;
using tv::test::kNoEliminar;

TEST_F(Inmuebles, AbreLosActivosPorExpedienteConSuTitulo)
{
    abrir();
    EXPECT_EQ(ds().selectSQL(), QStringLiteral("select * from inmuebles where activado ='S' order by codigo"));
    ds().fetchAll();
    ASSERT_EQ(ds().recordCount(), 2);
    EXPECT_EQ(valor("CODIGO"), QStringLiteral("00010"));
    EXPECT_EQ(pantalla->windowTitle(), QStringLiteral("Cartera de Inmuebles CAPTADOR: ANA / Apartamento: Las Dunas"));
    // The land page shows for land only.
    auto visible = [this](const QString& pagina) {
        for (int i = 0; i < pantalla->paginas()->count(); ++i)
            if (pantalla->paginas()->tabText(i) == pagina)
                return pantalla->paginas()->isTabVisible(i);
        return false;
    };
    EXPECT_FALSE(visible(QStringLiteral("Solar")));
    ds().next();
    EXPECT_TRUE(visible(QStringLiteral("Solar")));
    EXPECT_FALSE(visible(QStringLiteral("Edificio")));
    EXPECT_EQ(pantalla->windowTitle(), QStringLiteral("Cartera de Inmuebles CAPTADOR: LUIS / Apartamento: Las Dunas"));
}

TEST_F(Inmuebles, UnoNuevoLlevaTodosLosValoresIniciales)
{
    datos.dm().cargarAgente(2);
    abrir(6);
    test::ScriptedDialogs dialogos;
    pantalla->nuevo();
    ASSERT_EQ(ds().state(), DataSet::State::Insert);
    EXPECT_EQ(valor("CODIGO"), QStringLiteral("00021"));
    EXPECT_EQ(valor("TIENEFOTOS"), QStringLiteral("5"));
    EXPECT_EQ(valor("TURISTICO_ESTADO"), QStringLiteral("--"));
    for (const char* s : {"ACTIVADO", "PUBLICAR", "CARTELES", "SUBIR_PRECIO"})
        EXPECT_EQ(valor(s), QStringLiteral("S")) << s;
    for (const char* n : {"DESTACADO", "GOOGLE_MAPS_MANUAL", "EXCLUSIVA", "CPISCINA", "CVPO", "CDISPONIBLE",
                          "SSISTEMAANT", "FOTOS_ACT_PISOS", "FOTOS_ACT_TROVIMAP", "FOTOS_ACT_IDEALISTA"})
        EXPECT_EQ(valor(n), QStringLiteral("N")) << n;
    for (const char* a : {"CODCAPTADOR", "CODAGENTE", "CODPERITO"})
        EXPECT_EQ(ds().fieldByName(QLatin1String(a)).asInteger(), 2) << a;
    EXPECT_EQ(ds().fieldByName(QStringLiteral("CODPROPIETARIO")).asInteger(), 6);
    EXPECT_TRUE(ds().fieldByName(QStringLiteral("SPLAZAS")).isNull());
    // Linked screens wait for a stored record; the code may be typed now only.
    EXPECT_FALSE(pantalla->barraLateral()->isEnabled());
    EXPECT_TRUE(pantalla->controlFor(QStringLiteral("CODIGO"))->isEnabled());
    EXPECT_TRUE(dialogos.log().isEmpty());
}

TEST_F(Inmuebles, ElExpedienteTecleadoSeRellenaAlSalir)
{
    abrir();
    pantalla->nuevo();
    auto* codigo = qobject_cast<QLineEdit*>(pantalla->controlFor(QStringLiteral("CODIGO")));
    ASSERT_TRUE(codigo);
    codigo->selectAll();
    QTest::keyClicks(codigo, QStringLiteral("7"));
    Q_EMIT codigo->editingFinished();
    EXPECT_EQ(valor("CODIGO"), QStringLiteral("00007"));
    codigo->selectAll();
    QTest::keyClicks(codigo, QStringLiteral(" 123"));
    Q_EMIT codigo->editingFinished();
    EXPECT_EQ(valor("CODIGO"), QStringLiteral("00123"));
    ds().cancel();
    // A stored record's code cannot be changed.
    EXPECT_FALSE(pantalla->controlFor(QStringLiteral("CODIGO"))->isEnabled());
}

TEST_F(Inmuebles, LasComprobacionesEnSuOrdenComoErrores)
{
    abrir();
    test::ScriptedDialogs dialogos;
    pantalla->nuevo();
    poner("CODIGO", QVariant());
    poner("CODPROPIETARIO", QVariant());
    poner("MUNICIPIO", QVariant());
    const std::pair<const char*, QVariant> pasos[] = {
        {"CODIGO", QStringLiteral("00030")},       {"CODTIPOINMUEBLE", 1},
        {"MUNICIPIO", QStringLiteral("Ajalvir")}, {"CODTIPOOPERACION", 1},
        {"EUROIMPORTE", 90000.0},                 {"CODPROPIETARIO", 5},
    };
    const char* mensajes[] = {"Debe indicar el número de expediente", "Debe indicar el tipo de inmueble",
                              "Debe indicar la población",           "Debe indicar el tipo de operación",
                              "Debe indicar el precio del inmueble", "Debe indicar el propietario"};
    for (int i = 0; i < 6; ++i) {
        EXPECT_FALSE(pantalla->grabar());
        ASSERT_EQ(dialogos.log().size(), 1);
        EXPECT_EQ(dialogos.log().first().kind, Kind::Error);
        EXPECT_EQ(dialogos.log().first().text, QString::fromUtf8(mensajes[i]));
        dialogos.clear();
        EXPECT_EQ(ds().state(), DataSet::State::Insert);
        poner(pasos[i].first, pasos[i].second);
    }
    dialogos.answer(true);
    EXPECT_TRUE(pantalla->grabar());
    EXPECT_EQ(dialogos.texts(), QStringList{kGrabar});
    EXPECT_EQ(cuenta(datos.dm().datos, QStringLiteral("SELECT COUNT(*) FROM INMUEBLES WHERE CODIGO = '00030'")), 1);
}

TEST_F(Inmuebles, ExpedienteRepetidoSoloAlInsertar)
{
    abrir();
    test::ScriptedDialogs dialogos;
    pantalla->nuevo();
    poner("CODIGO", QStringLiteral("10"));
    poner("CODTIPOINMUEBLE", 1);
    poner("MUNICIPIO", QStringLiteral("Ajalvir"));
    poner("CODTIPOOPERACION", 1);
    poner("EUROIMPORTE", 1000.0);
    poner("CODPROPIETARIO", 5);
    EXPECT_FALSE(pantalla->grabar());
    EXPECT_EQ(dialogos.texts(), QStringList{QStringLiteral("El número de expediente ya existe")});
    dialogos.clear();
    EXPECT_EQ(cuenta(datos.dm().datos, QStringLiteral("SELECT COUNT(*) FROM INMUEBLES")), 3);
    ds().cancel();
    // Changing a stored property runs no such check.
    ds().first();
    ds().edit();
    poner("EUROIMPORTE", 140000.0);
    dialogos.answer(true);
    EXPECT_TRUE(pantalla->grabar());
    EXPECT_EQ(dialogos.texts(), QStringList{kGrabar});
    EXPECT_DOUBLE_EQ(enBase(QStringLiteral("00010"), "EUROIMPORTE").toDouble(), 140000.0);
}

TEST_F(Inmuebles, GrabarGuardaDescripcionesVideoYTextosRusosJuntos)
{
    abrir();
    test::ScriptedDialogs dialogos;
    ds().edit();
    poner("CODTIPOZONA", QVariant());
    poner("CODPROPIETARIO", 6);
    EXPECT_EQ(valor("TELEFONO"), QStringLiteral("915551234"));
    poner("CODPROPIETARIO2", 5);
    // The first phone there is: the landline is empty, so the mobile.
    EXPECT_EQ(valor("TELEFONO2"), QStringLiteral("600111222"));
    poner("YOUTUBE", QStringLiteral("https://www.youtube.com/watch?v=zz9&feature=youtu.be"));
    pantalla->rusoInformacion()->setPlainText(QStringLiteral("Квартира у моря"));
    pantalla->rusoCabecera()->setPlainText(QStringLiteral("ПРОДАЁТСЯ"));
    dialogos.answer(true);
    ASSERT_TRUE(pantalla->grabar());
    EXPECT_EQ(dialogos.texts(), QStringList{kGrabar});
    const QString c = QStringLiteral("00010");
    EXPECT_EQ(enBase(c, "YOUTUBE").toString(), QStringLiteral("https://www.youtube.com/embed/zz9"));
    EXPECT_EQ(enBase(c, "NOMBREPROPIETARIO").toString(), QStringLiteral("PEREZ, JUAN"));
    EXPECT_EQ(enBase(c, "DESTIPOINMUEBLE").toString(), QStringLiteral("PISO"));
    EXPECT_EQ(enBase(c, "DESTIPOOPERACION").toString(), QStringLiteral("VENTA"));
    EXPECT_EQ(enBase(c, "CARTELES_INFORMARUS").toString(), QStringLiteral("Квартира у моря"));
    EXPECT_EQ(enBase(c, "CARTELES_CABECERARUS").toString(), QStringLiteral("ПРОДАЁТСЯ"));
    EXPECT_FALSE(enBase(c, "FECHA_MODIFICA").isNull());
    dialogos.clear();
    // A second save of the same row is not taken for another workstation's change.
    ds().edit();
    poner("EUROIMPORTE", 151000.0);
    dialogos.answer(true);
    EXPECT_TRUE(pantalla->grabar());
    EXPECT_EQ(dialogos.texts(), QStringList{kGrabar});
}

TEST_F(Inmuebles, ReglaDelAgenteAlModificarYBorrar)
{
    datos.dm().cargarAgente(2);
    abrir();
    test::ScriptedDialogs dialogos;
    ASSERT_EQ(valor("CODIGO"), QStringLiteral("00010")); // agent 1's
    pantalla->rusoInformacion()->setPlainText(QStringLiteral("текст"));
    EXPECT_EQ(ds().state(), DataSet::State::Browse);
    EXPECT_TRUE(pantalla->rusoInformacion()->toPlainText().isEmpty());
    EXPECT_EQ(dialogos.texts(), QStringList{kNoModificar});
    dialogos.clear();
    pantalla->borrar();
    EXPECT_EQ(dialogos.texts(), QStringList{kNoEliminar});
    EXPECT_EQ(cuenta(datos.dm().datos, QStringLiteral("SELECT COUNT(*) FROM INMUEBLES WHERE CODIGO = '00010'")), 1);
    // His own one he changes.
    ds().next();
    ds().edit();
    EXPECT_EQ(ds().state(), DataSet::State::Edit);
}

TEST_F(Inmuebles, BorrarQuitaSusFotosYNadaMas)
{
    for (int i = 1; i <= 3; ++i)
        Query::execute(datos.dm().Imagenes, datos.dm().Transacion,
                       QStringLiteral("INSERT INTO IMAGENES (ID, CODINMUEBLE) VALUES (%1, %2)").arg(i).arg(i < 3 ? 10 : 11));
    ejecutar(QStringLiteral("INSERT INTO GESTIONES (CODIGO, CODINMUEBLE) VALUES (1, '00010')"));
    abrir();
    test::ScriptedDialogs dialogos;
    dialogos.answer(false);
    pantalla->borrar();
    EXPECT_EQ(dialogos.texts(), QStringList{QStringLiteral("¿Está seguro de eliminar el inmueble seleccionado?")});
    dialogos.clear();
    EXPECT_EQ(cuenta(datos.dm().Imagenes, QStringLiteral("SELECT COUNT(*) FROM IMAGENES")), 3);
    dialogos.answer(true);
    pantalla->borrar();
    dialogos.clear();
    EXPECT_EQ(cuenta(datos.dm().datos, QStringLiteral("SELECT COUNT(*) FROM INMUEBLES WHERE CODIGO = '00010'")), 0);
    EXPECT_EQ(cuenta(datos.dm().Imagenes, QStringLiteral("SELECT COUNT(*) FROM IMAGENES WHERE CODINMUEBLE = 10")), 0);
    EXPECT_EQ(cuenta(datos.dm().Imagenes, QStringLiteral("SELECT COUNT(*) FROM IMAGENES WHERE CODINMUEBLE = 11")), 1);
    EXPECT_EQ(cuenta(datos.dm().datos, QStringLiteral("SELECT COUNT(*) FROM GESTIONES")), 1);
}

TEST_F(Inmuebles, BuscarReabreConLaCondicionYQuitarFiltroVuelve)
{
    abrir();
    registro::setEjecutorModal([](QDialog& d) {
        auto* b = qobject_cast<registro::TfrmBuscarInmueble*>(&d);
        EXPECT_TRUE(b);
        if (!b)
            return 0;
        b->expediente()->setText(QStringLiteral("11"));
        return int(QDialog::Accepted);
    });
    pantalla->buscar();
    EXPECT_EQ(ds().selectSQL(),
              QStringLiteral("select * from inmuebles  WHERE CODIGO = '00011' and activado ='S'  order by codigo"));
    ds().fetchAll();
    EXPECT_EQ(ds().recordCount(), 1);
    EXPECT_TRUE(pantalla->filtrado());
    pantalla->eliminarFiltro();
    EXPECT_EQ(ds().selectSQL(), QStringLiteral("select * from inmuebles where activado ='S' order by codigo"));
    EXPECT_EQ(valor("CODIGO"), QStringLiteral("00011")); // stays on the property shown
    EXPECT_FALSE(pantalla->filtrado());
}

TEST_F(Inmuebles, CopiarPreguntaCreaOtroYLoDice)
{
    abrir();
    test::ScriptedDialogs dialogos;
    dialogos.answer(false);
    pantalla->FlaTcxButton222Click();
    EXPECT_EQ(dialogos.texts(),
              QStringList{QStringLiteral("¿Está seguro generar un nuevo inmueble a partir del inmueble \r\nseleccionado?")});
    EXPECT_EQ(cuenta(datos.dm().datos, QStringLiteral("SELECT COUNT(*) FROM INMUEBLES")), 3);
    dialogos.clear();
    dialogos.answer(true);
    pantalla->FlaTcxButton222Click();
    EXPECT_EQ(dialogos.texts().last(), QStringLiteral("Inmueble copiado correctamente"));
    EXPECT_EQ(valor("CODIGO"), QStringLiteral("00021"));
    EXPECT_EQ(valor("NOMBREVIA").trimmed(), QStringLiteral("Mayor"));
    EXPECT_EQ(cuenta(datos.dm().datos, QStringLiteral("SELECT COUNT(*) FROM INMUEBLES")), 4);
}

TEST_F(Inmuebles, VideoWebYPendientes)
{
    abrir();
    test::ScriptedDialogs dialogos;
    pantalla->verVideo();
    EXPECT_EQ(dialogos.texts(), QStringList{QStringLiteral("No existe ningún video en Youtube asociado a este inmueble")});
    dialogos.clear();

    ejecutar(QStringLiteral("UPDATE INMUEBLES SET YOUTUBE = 'https://www.youtube.com/watch?v=q7' WHERE CODIGO = '00010'"));
    ds().refreshRecord();
    QString abierta, pagina;
    reports::setUrlOpener([&abierta](const QUrl& u) {
        abierta = u.toLocalFile();
        return true;
    });
    QObject::connect(pantalla.get(), &TfrmInmuebles::videoMostrado, [&pagina](const QString& p) { pagina = p; });
    pantalla->verVideo();
    ASSERT_FALSE(pagina.isEmpty());
    EXPECT_TRUE(pagina.endsWith(QStringLiteral("youtube.html")));
    EXPECT_EQ(abierta, pagina);
    QFile f(pagina);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_TRUE(QString::fromUtf8(f.readAll()).contains(QStringLiteral("https://www.youtube.com/embed/q7")));

    ds().edit();
    pantalla->publicarEnWeb();
    EXPECT_EQ(dialogos.texts(), QStringList{QStringLiteral("Debe grabar los cambios antes de exportar a Internet")});
    dialogos.clear();
    ds().cancel();
    pantalla->publicarEnWeb();
    EXPECT_EQ(dialogos.texts(), QStringList{QStringLiteral("El inmueble se publicará en su web en el próximo envío.")});
    dialogos.clear();
    EXPECT_EQ(enBase(QStringLiteral("00010"), "SUBIR_INTERNET").toString(), QStringLiteral("S"));
    EXPECT_EQ(valor("SUBIR_INTERNET"), QStringLiteral("S"));
    dialogos.answer(true);
    pantalla->quitarDeWeb();
    EXPECT_EQ(dialogos.texts(), QStringList{QStringLiteral("¿Está seguro de eliminar este inmueble a su web?")});
    dialogos.clear();
    EXPECT_EQ(enBase(QStringLiteral("00010"), "SUBIR_INTERNET").toString(), QStringLiteral("N"));

    dialogos.clear();
    pantalla->bCasacionClick();
    EXPECT_EQ(dialogos.texts(),
              QStringList{QStringLiteral("La función «Casación» todavía no está disponible en esta versión.")});
}

TEST_F(Inmuebles, LosBotonesDelPropietarioAbrenSuFicha)
{
    registro::registrarComandos();
    abrir();
    QString visto;
    registro::setEjecutorModal([&visto](QDialog& d) {
        visto = d.windowTitle();
        return 0;
    });
    pantalla->btnpropietarioClick();
    EXPECT_EQ(visto, QStringLiteral("Propietario 5 - GARCIA LOPEZ, MARIA"));
    test::ScriptedDialogs dialogos;
    pantalla->btnPropietario2Click();
    EXPECT_EQ(dialogos.texts(), QStringList{QStringLiteral("El inmueble no tiene asignado este propietario.")});
}

TEST_F(Inmuebles, ImprimeFichaDeSuFamiliaCarteraYGestiones)
{
    abrir();
    test::ScriptedServices servicios;
    pantalla->imprimirFicha();
    ds().next();
    pantalla->imprimirFicha();
    pantalla->imprimirCartera();
    pantalla->imprimirGestiones();
    const auto llamadas = servicios.calls();
    ASSERT_EQ(llamadas.size(), 4);
    EXPECT_EQ(llamadas[0].name, QStringLiteral("in_ficha_piso"));
    EXPECT_EQ(llamadas[1].name, QStringLiteral("in_ficha_solar"));
    EXPECT_EQ(llamadas[1].data.value(QStringLiteral("inmueble")).toMap().value(QStringLiteral("codigo")).toString(),
              QStringLiteral("00011"));
    EXPECT_EQ(llamadas[2].name, QStringLiteral("in_ofertas"));
    EXPECT_EQ(llamadas[3].name, QStringLiteral("in_inmuebleGestion"));
}

TEST_F(Inmuebles, PosicionManualYBarraLateralSegunElEstado)
{
    abrir();
    QWidget* latitud = pantalla->controlFor(QStringLiteral("LATITUDE"));
    ASSERT_TRUE(latitud);
    EXPECT_FALSE(latitud->isVisible());
    ds().edit();
    poner("GOOGLE_MAPS_MANUAL", QStringLiteral("S"));
    EXPECT_TRUE(latitud->isVisible());
    EXPECT_FALSE(pantalla->barraLateral()->isEnabled());
    ds().cancel();
    EXPECT_FALSE(latitud->isVisible());
    EXPECT_TRUE(pantalla->barraLateral()->isEnabled());
}

TEST_F(Inmuebles, ElComandoAbreLaCartera)
{
    ui::commands().clear();
    registro::registrarComandos();
    const ui::Command* c = ui::commands().find(QStringLiteral("inmuebles"));
    ASSERT_TRUE(c);
    EXPECT_EQ(c->openAs, ui::OpenAs::Child);
    std::unique_ptr<QWidget> w(c->factory(nullptr));
    EXPECT_EQ(w->objectName(), QStringLiteral("TfrmInmuebles"));
    ui::commands().clear();
}
