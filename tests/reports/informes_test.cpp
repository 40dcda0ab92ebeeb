#include "dm.h"
#include "documentrenderer.h"
#include "pdftools.h"
#include "report.h"
#include "reportdata.h"
#include "reportfixture.h"
#include "testdata.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tv::reports;

namespace {

// Every template filled from a small agency and read back from its PDF.
class Informes : public ::testing::Test {
protected:
    void SetUp() override { tv::test::ReportFixture::fill(mData.dm()); }
    void TearDown() override { tv::dm = nullptr; }

    tv::Tdm& dm() { return mData.dm(); }

    // The text of the report's PDF.
    QString pdf(const QString& plantilla, const QVariantMap& datos, int* pages = nullptr)
    {
        const QString path = mOut.filePath(plantilla + ".pdf");
        exportPdf(plantilla, datos, path);
        EXPECT_TRUE(QFileInfo::exists(path));
        if (pages)
            *pages = tv::test::pdfPages(path);
        return tv::test::pdfText(path);
    }

    static void expectAll(const QString& text, const QStringList& wanted)
    {
        for (const QString& w : wanted)
            EXPECT_TRUE(text.contains(w)) << "missing: " << w.toStdString() << "\n" << text.toStdString();
    }

    static QString messageOf(const std::function<void()>& f)
    {
        try {
            f();
        } catch (const ReportError& e) {
            return e.message();
        }
        return {};
    }

    tv::test::TestData mData;
    QTemporaryDir mOut;
};

const QStringList kAgencia = {"Inmobiliaria Mediterránea", "Av. del Puerto, 42", "46021 Valencia (Valencia)",
                              "Tel. 963 123 456", "info@inmomediterranea.es"};

} // namespace

TEST_F(Informes, EachFamilyPrintsItsOwnSheet)
{
    const QMap<QString, QString> expected = {
        {"00001", "in_ficha_piso"},  {"00002", "in_ficha_casa"},     {"00003", "in_ficha_nave"},
        {"00004", "in_ficha_local"}, {"00005", "in_ficha_parking"},  {"00006", "in_ficha_solar"},
        {"00007", "in_ficha_edificio"}, {"00008", "in_ficha_rustica"},
    };
    for (auto it = expected.cbegin(); it != expected.cend(); ++it)
        EXPECT_EQ(plantillaFicha(dm(), it.key()), it.value()) << it.key().toStdString();
    // The code is padded as the register pads it.
    EXPECT_EQ(plantillaFicha(dm(), "3"), "in_ficha_nave");
    EXPECT_EQ(messageOf([&] { plantillaFicha(dm(), "00099"); }), "No existe el inmueble 00099.");
}

TEST_F(Informes, FlatSheetShowsDataFeaturesAndPhotos)
{
    const QVariantMap datos = datosFichaInmueble(dm(), "00001");
    const QVariantMap fotos = datos.value("fotos").toMap();
    EXPECT_EQ(fotos.value("numero").toInt(), 5);
    EXPECT_TRUE(fotos.value("principal").toString().startsWith("data:image/jpeg;base64,"));
    EXPECT_EQ(fotos.value("miniaturas").toList().size(), 4);
    // Logo and five photographs reach the page as images.
    EXPECT_EQ(DocumentRenderer(renderHtml("in_ficha_piso", datos)).imageCount(), 6);

    int pages = 0;
    const QString text = pdf("in_ficha_piso", datos, &pages);
    EXPECT_EQ(pages, 1);
    expectAll(text, kAgencia);
    expectAll(text, {"Ref. 00001", "EN EXCLUSIVA", "Piso en venta en Valencia", "Ruzafa · 46006 Valencia",
                     "185.000,00 €", "Características de la vivienda", "Equipamiento y calidades", "95 m²", "Superficie útil", "82,5 m²", "Dormitorios", "Baños",
                     "Año de construcción", "1972", "Disponible", "Ascensor", "Calefacción · Gas natural",
                     "Terraza · 12 m²", "Suelo · Parquet", "Luminoso piso reformado", "Gastos de comunidad de 45 €",
                     "Certificado", "Consumo: 145 kWh/m²", "Laura Martínez Soler", "Tel. 600 111 222",
                     "Página 1 de 1"});
    // Features not ticked and the agency's internal remarks stay off a client's sheet.
    EXPECT_FALSE(text.contains("Piscina"));
    EXPECT_FALSE(text.contains("175.000"));
    EXPECT_FALSE(text.contains("García Pérez"));
}

TEST_F(Informes, OtherFamiliesShowTheirOwnData)
{
    struct Case {
        const char* codigo;
        QStringList wanted;
        QStringList absent;
    };
    const QList<Case> cases = {
        {"00002", {"Chalet en venta en Valencia", "420.000,00 €", "Superficie de parcela", "800 m²", "Piscina", "Jardín",
                   "Garaje · 2 plazas"}, {"Muelle"}},
        {"00003", {"Nave industrial en alquiler en Paterna", "Características de la nave", "Instalaciones", "2.500,00 €", "1.200 m²", "Altura libre", "8,5 m",
                   "Muelle de carga", "Oficina", "Salida de humos"}, {"Dormitorios"}},
        {"00004", {"Local comercial en traspaso en Valencia", "45.000,00 €", "Fachada", "de fachada", "Escaparate · Dos escaparates"},
         {}},
        {"00005", {"Garaje en alquiler en Valencia", "90,00 €", "Plazas", "12 m²", "Plaza cerrada"}, {}},
        {"00006", {"Solar en venta en Burjassot", "Datos urbanísticos", "Clase de suelo", "Urbano",
                   "Residencial plurifamiliar", "Coeficiente de edificabilidad", "1,5", "Superficie de techo", "900 m²",
                   "Urbanizado"}, {}},
        {"00007", {"Edificio en venta en Valencia", "2.350.000,00 €", "Datos del edificio", "Número de viviendas", "12",
                   "Plantas sobre rasante", "1965", "Ascensor"}, {}},
        {"00008", {"Finca rústica en venta en Alzira", "Datos de la finca", "Naranjos", "Camino asfaltado",
                   "Precio por hectárea", "21.333,33 €", "150.000 m²", "Agua"}, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.codigo);
        const QString text = pdf(plantillaFicha(dm(), c.codigo), datosFichaInmueble(dm(), c.codigo));
        expectAll(text, c.wanted);
        expectAll(text, {"Inmobiliaria Mediterránea", QString("Ref. ") + c.codigo});
        for (const QString& a : c.absent)
            EXPECT_FALSE(text.contains(a)) << a.toStdString();
    }
}

TEST_F(Informes, ASheetForAPropertyThatDoesNotExistIsRefused)
{
    EXPECT_EQ(messageOf([&] { datosFichaInmueble(dm(), "99"); }), "No existe el inmueble 00099.");
    EXPECT_EQ(messageOf([&] { datosInmuebleGestion(dm(), "00099"); }), "No existe el inmueble 00099.");
    EXPECT_EQ(messageOf([&] { datosInmuebleGastos(dm(), "00099"); }), "No existe el inmueble 00099.");
    EXPECT_EQ(messageOf([&] { datosCliente(dm(), 77); }), "No existe el cliente 77.");
    EXPECT_EQ(messageOf([&] { datosPropietario(dm(), 77); }), "No existe el propietario 77.");
    EXPECT_EQ(messageOf([&] { datosGestion(dm(), 77); }), "No existe la gestión 77.");
}

TEST_F(Informes, PortfolioListsTheLiveStockOrTheChosenCodes)
{
    tv::Query::execute(dm().datos, dm().Transacion, "UPDATE INMUEBLES SET ACTIVADO = 'N' WHERE CODIGO = '00005'");
    const QVariantMap todos = datosOfertas(dm());
    EXPECT_EQ(todos.value("numero").toInt(), 7);
    const QString text = pdf("in_ofertas", todos);
    expectAll(text, kAgencia);
    expectAll(text, {"Selección de inmuebles", "00001", "00008", "185.000,00 €", "2.350.000,00 €", "Piso · Venta",
                     "Ruzafa, Valencia", "Número de inmuebles: 7"});
    EXPECT_FALSE(text.contains("00005"));

    const QVariantMap dos = datosOfertas(dm(), QStringList{"2", "00004"});
    EXPECT_EQ(dos.value("numero").toInt(), 2);
    const QString t2 = pdf("in_ofertas", dos);
    expectAll(t2, {"00002", "00004", "420.000,00 €", "Número de inmuebles: 2"});
    EXPECT_FALSE(t2.contains("00001"));

    // The register's own select decides the list.
    const QVariantMap filtro =
        datosOfertas(dm(), "select * from inmuebles where activado ='S' and codtipooperacion = 2 order by codigo");
    EXPECT_EQ(filtro.value("numero").toInt(), 1);
}

TEST_F(Informes, PropertyFollowUpsAreThoseOfTheProperty)
{
    const QString text = pdf("in_inmuebleGestion", datosInmuebleGestion(dm(), "00001"));
    expectAll(text, {"Gestiones del inmueble 00001", "García Pérez, Antonio", "Visita con la clienta al piso",
                     "Llamada para confirmar", "Le ha gustado mucho", "10/03/2026", "12/03/2026", "Fernández López, María",
                     "Número de gestiones: 2"});
    EXPECT_FALSE(text.contains("Oferta de 400.000"));

    // An agent who sees only his own follow-ups prints only his.
    dm().agente.codigo = 2;
    dm().agente.verSoloSusGestiones = true;
    const QVariantMap propias = datosInmuebleGestion(dm(), "00001");
    ASSERT_EQ(propias.value("gestiones").toList().size(), 1);
    EXPECT_EQ(propias.value("gestiones").toList().at(0).toMap().value("asunto").toString(),
              "Llamada para confirmar la segunda visita");
}

TEST_F(Informes, ClientSheetWithDemandsAndFollowUps)
{
    const QString text = pdf("in_cliente", datosCliente(dm(), 1));
    expectAll(text, kAgencia);
    expectAll(text, {"CLIENTE Nº 1", "Sra. Fernández López, María", "87654321X", "AV Blasco Ibáñez 0101",
                     "46022 Valencia (Valencia)", "677 888 999", "maria.fernandez@correo.es", "Alta el 15/01/2026",
                     "Casada", "Mujer", "Internet", "Busca piso con ascensor", "Demandas (1)", "Venta", "Piso, Apartamento",
                     "Valencia (Ruzafa)", "de 150.000,00 € a 200.000,00 €", "Gestiones (2)", "Visita con la clienta"});
}

TEST_F(Informes, OwnerSheetListsTheOwnersProperties)
{
    const QVariantMap datos = datosPropietario(dm(), 1);
    EXPECT_EQ(datos.value("numero_inmuebles").toInt(), 8);
    const QString text = pdf("in_propietario", datos);
    expectAll(text, {"PROPIETARIO Nº 1", "Sr. García Pérez, Antonio", "12345678Z", "CL Sueca 0014 2 B",
                     "46006 Valencia (Valencia)", "Prefiere que le llamen por la tarde", "Inmuebles del propietario (8)",
                     "00001", "00008", "Nave industrial", "Venta", "Campanar", "2.350.000,00 €"});
}

TEST_F(Informes, FollowUpSheetWithItsPropertyOwnerAndClient)
{
    const QString text = pdf("in_gestion", datosGestion(dm(), 1));
    expectAll(text, {"GESTIÓN Nº 1", "Visita con la clienta al piso de Ruzafa", "Visita", "10/03/2026", "10:30",
                     "Laura Martínez Soler", "00001", "CL Sueca 14 3 B Valencia", "185.000,00 €", "García Pérez, Antonio",
                     "Sra. Fernández López, María", "677 888 999", "Le ha gustado mucho"});
}

TEST_F(Informes, FollowUpListOfADateRangeGroupedByType)
{
    const QVariantMap datos = datosGestiones(dm(), QDate(2026, 3, 11), QDate(2026, 3, 31));
    EXPECT_EQ(datos.value("numero").toInt(), 2);
    const QVariantList grupos = datos.value("grupos").toList();
    ASSERT_EQ(grupos.size(), 2);
    // The listing's order: by type code.
    EXPECT_EQ(grupos.at(0).toMap().value("tipo").toString(), "Llamada");
    EXPECT_EQ(grupos.at(1).toMap().value("tipo").toString(), "Oferta");
    int pages = 0;
    const QString text = pdf("in_gestiones", datos, &pages);
    expectAll(text, {"Listado de gestiones", "Del 11/03/2026 al 31/03/2026", "Llamada (1)", "Oferta (1)",
                     "Oferta de 400.000 € por el chalet", "Navarro Gil, Pedro", "Número de gestiones: 2"});
    EXPECT_FALSE(text.contains("Visita con la clienta"));
}

TEST_F(Informes, InterestedClientsInNameOrderWithDiscards)
{
    const QVariantMap datos = datosInteresados(dm(), "00001", {"3", "1", "2", "1", "x"});
    const QVariantList clientes = datos.value("clientes").toList();
    ASSERT_EQ(clientes.size(), 3);
    EXPECT_EQ(clientes.at(0).toMap().value("nombre").toString(), "Fernández López, María");
    EXPECT_EQ(clientes.at(1).toMap().value("nombre").toString(), "Navarro Gil, Pedro");
    EXPECT_EQ(clientes.at(2).toMap().value("nombre").toString(), "Peña Ortiz, Lucía");
    EXPECT_FALSE(clientes.at(0).toMap().value("descartado").toBool());
    EXPECT_TRUE(clientes.at(2).toMap().value("descartado").toBool());
    const QString text = pdf("in_interesados", datos);
    expectAll(text, {"Clientes interesados", "00001", "185.000,00 €", "Fernández López, María", "677 888 999",
                     "pnavarro@correo.es", "Peña Ortiz, Lucía", "Número de clientes: 3"});

    const QString vacio = pdf("in_interesados", datosInteresados(dm(), "00001", {}));
    EXPECT_TRUE(vacio.contains("No existe ningún cliente interesado"));
}

TEST_F(Informes, TaskListSqlIsTheAgendasOwn)
{
    EXPECT_EQ(consultaAgendax(QDate(2026, 3, 1), QDate(2026, 3, 31), false),
              " select a.Inicio, a.finish as Fin, a.caption as Motivo, a.location as Tipo_Visita from agendax a  "
              "where a.inicio >= '01.03.2026' and a.finish <='31.03.2026 23:59' order by a.inicio ");
    EXPECT_EQ(consultaAgendax(QDate(2026, 3, 1), QDate(2026, 3, 31), true),
              " select a.Inicio, a.finish as Fin, a.caption as Motivo, a.location as Tipo_Visita from agendax a  "
              "where codusuario =:codusuario and a.inicio >= '01.03.2026' and a.finish <='31.03.2026 23:59' "
              "order by a.inicio ");
}

TEST_F(Informes, TaskListWithItsFixedHeadingsAndCount)
{
    const QVariantMap datos = datosAgendax(dm(), QDate(2026, 3, 10), QDate(2026, 3, 12), tv::CurrentAgent{});
    EXPECT_EQ(datos.value("numero").toInt(), 3);
    const QString text = pdf("in_agendax", datos);
    expectAll(text, kAgencia);
    expectAll(text, {"Listado de tareas", "Inicio", "Fin", "Tipo Cita", "Asunto", "10/03/2026 10:30",
                     "10/03/2026 11:15", "VISITA A INMUEBLE", "Tasación del chalet de Campanar", "Firma de arras",
                     "Número de Tareas: 3", "Página 1 de 1"});
    // The last day runs to 23:59; a day before the first is left out.
    EXPECT_EQ(datosAgendax(dm(), QDate(2026, 3, 11), QDate(2026, 3, 12), tv::CurrentAgent{}).value("numero").toInt(), 2);

    tv::CurrentAgent laura;
    laura.usuario = "LAURA ";
    laura.verSoloSuAgenda = true;
    const QVariantMap propia = datosAgendax(dm(), QDate(2026, 3, 1), QDate(2026, 3, 31), laura);
    EXPECT_EQ(propia.value("numero").toInt(), 2);
    EXPECT_TRUE(pdf("in_agendax", propia).contains("Número de Tareas: 2"));

    const QVariantMap vacia = datosAgendax(dm(), QDate(2026, 4, 1), QDate(2026, 4, 30), tv::CurrentAgent{});
    EXPECT_EQ(vacia.value("numero").toInt(), 0);
    QString plantilla;
    EXPECT_EQ(messageOf([&] {
                  datosPorNombre(dm(), "in_agendax", {{"desde", "01/04/2026"}, {"hasta", "30/04/2026"}}, &plantilla);
              }),
              "No existen registros para esta consulta.");
}

TEST_F(Informes, ExpensesWithTitleAndTotal)
{
    EXPECT_EQ(tituloGastos(dm(), "00001"), "00001-valencia-piso(ruzafa)");
    // Without a zone the parentheses stay empty.
    EXPECT_EQ(tituloGastos(dm(), "00003"), "00003-paterna-nave industrial()");
    const QVariantMap datos = datosInmuebleGastos(dm(), "00001");
    EXPECT_EQ(datos.value("total").toString(), "1.334,56 €");
    const QString text = pdf("in_inmueblegastos", datos);
    expectAll(text, kAgencia);
    expectAll(text, {"Gastos del inmueble 00001", "00001-valencia-piso(ruzafa)", "Fecha", "Tipo de gasto", "Descripción",
                     "Importe", "01/03/2026", "PUBLICIDAD", "Anuncio en portales, marzo", "150,00 €", "1.234,56 €",
                     "-50,00 €", "Total gastos (3)", "1.334,56 €"});
}

TEST_F(Informes, StatisticsPrintTheirGroupedQueries)
{
    struct Case {
        int n;
        QStringList wanted;
    };
    const QList<Case> cases = {
        {1, {"Estadística de Inmuebles por Zonas", "Zona", "Inmuebles", "Benimaclet", "Campanar", "El Carmen", "Ruzafa"}},
        {2, {"Precio medio por Zonas", "Precio medio", "Ruzafa", "185.000,00 €", "Campanar", "420.000,00 €"}},
        {3, {"Numero de Operaciones por Agente", "Agente", "Operaciones", "Laura Martínez Soler", "Jorge Ibáñez Ruiz"}},
        {4, {"Ventas por Agente", "Importe", "425.000,00 €", "99.000,50 €", "524.000,50 €"}},
        {5, {"Captaciones por Agente", "Captaciones", "Laura Martínez Soler"}},
        {6, {"Captaciones por tipo de Origen", "Origen", "No hay datos para esta estadística."}},
        {7, {"Evolución de las operaciones", "Año y mes", "Operaciones", "2026/01", "2026/02"}},
        {8, {"Evolución monetaria de las operaciones", "Año y mes", "5.550,00 €", "10.170,25 €", "15.720,25 €"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.n);
        const QString text = pdf(QString("in_estadistica%1").arg(c.n), datosEstadistica(dm(), c.n));
        expectAll(text, kAgencia);
        expectAll(text, c.wanted);
    }
    // Average price: sales only (the premises are a transfer), and no total.
    const QVariantMap precio = datosEstadistica(dm(), 2);
    EXPECT_FALSE(precio.contains("total"));
    QStringList zonas;
    for (const QVariant& f : precio.value("filas").toList())
        zonas.append(f.toMap().value("etiqueta").toString());
    EXPECT_FALSE(zonas.contains("El Carmen"));
    // Counts per month.
    const QVariantList meses = datosEstadistica(dm(), 7).value("filas").toList();
    ASSERT_EQ(meses.size(), 2);
    EXPECT_EQ(meses.at(1).toMap().value("valor").toString(), "2");
    EXPECT_EQ(meses.at(1).toMap().value("barra").toInt(), 100);
    EXPECT_EQ(meses.at(0).toMap().value("barra").toInt(), 50);
    EXPECT_EQ(messageOf([&] { datosEstadistica(dm(), 9); }), "No existe la estadística 9.");
}

TEST_F(Informes, ByNameAsTheCommandLineAsks)
{
    QString plantilla;
    const QVariantMap ficha = datosPorNombre(dm(), "ficha", {{"codigo", "6"}}, &plantilla);
    EXPECT_EQ(plantilla, "in_ficha_solar");
    EXPECT_EQ(ficha.value("inmueble").toMap().value("codigo").toString(), "00006");
    datosPorNombre(dm(), "informes\\in_inmueblegestion", {{"codigo", "00001"}}, &plantilla);
    EXPECT_EQ(plantilla, "in_inmuebleGestion");
    datosPorNombre(dm(), "IN_ESTADISTICA7", {}, &plantilla);
    EXPECT_EQ(plantilla, "in_estadistica7");
    EXPECT_EQ(messageOf([&] { datosPorNombre(dm(), "in_cliente", {}, &plantilla); }),
              "El informe in_cliente necesita el parámetro codigo (--param codigo=...).");
    EXPECT_EQ(messageOf([&] { datosPorNombre(dm(), "in_cliente", {{"codigo", "uno"}}, &plantilla); }),
              "El parámetro codigo debe ser un número: uno");
    EXPECT_EQ(messageOf([&] { datosPorNombre(dm(), "in_gestiones", {{"desde", "32/13/2026"}}, &plantilla); }),
              "La fecha del parámetro desde no es válida: 32/13/2026 (use dd/mm/aaaa)");
    const QVariantMap gestiones =
        datosPorNombre(dm(), "in_gestiones", {{"desde", "01.03.2026"}, {"hasta", "2026-03-31"}}, &plantilla);
    EXPECT_EQ(gestiones.value("numero").toInt(), 3);
}
