#include "reportfixture.h"

#include "dm.h"

#include <QBuffer>
#include <QDateTime>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace tv::test {

namespace {

QByteArray png(const QImage& img)
{
    QByteArray out;
    QBuffer buffer(&out);
    buffer.open(QIODevice::WriteOnly);
    img.save(&buffer, "PNG");
    return out;
}

QDateTime at(int y, int m, int d, int h = 0, int min = 0)
{
    return QDateTime(QDate(y, m, d), QTime(h, min));
}

} // namespace

void ReportFixture::insert(Tdm& data, const QString& table, const QVariantMap& row)
{
    QStringList cols;
    QStringList params;
    for (auto it = row.cbegin(); it != row.cend(); ++it) {
        cols.append(it.key());
        params.append(QLatin1Char(':') + it.key());
    }
    Query q(data.datos, data.Transacion,
            QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)").arg(table, cols.join(QLatin1Char(',')), params.join(QLatin1Char(','))));
    for (auto it = row.cbegin(); it != row.cend(); ++it)
        q.paramByName(it.key()).setValue(it.value());
    q.exec();
}

void ReportFixture::insertImage(Tdm& data, int id, int codInmueble, const QByteArray& picture)
{
    Query q(data.Imagenes, data.Transacion,
            QStringLiteral("INSERT INTO IMAGENES (ID, CODINMUEBLE, FECHA, GRAPHICCLASS, PICTURE) "
                           "VALUES (:ID, :CODINMUEBLE, :FECHA, :GRAPHICCLASS, :PICTURE)"));
    q.paramByName(QStringLiteral("ID")).setAsInteger(id);
    q.paramByName(QStringLiteral("CODINMUEBLE")).setAsInteger(codInmueble);
    q.paramByName(QStringLiteral("FECHA")).setAsDateTime(at(2026, 2, 1));
    q.paramByName(QStringLiteral("GRAPHICCLASS")).setAsString(QStringLiteral("TPNGImage"));
    q.paramByName(QStringLiteral("PICTURE")).setAsBytes(picture);
    q.exec();
}

QByteArray ReportFixture::photo(int variant, int width, int height)
{
    QImage img(width, height, QImage::Format_RGB32);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    const int horizon = height * 62 / 100;
    QLinearGradient sky(0, 0, 0, horizon);
    sky.setColorAt(0, QColor(86, 150, 214));
    sky.setColorAt(1, QColor(196, 224, 246));
    p.fillRect(0, 0, width, horizon, sky);
    QLinearGradient ground(0, horizon, 0, height);
    ground.setColorAt(0, variant % 2 ? QColor(120, 160, 90) : QColor(176, 170, 160));
    ground.setColorAt(1, variant % 2 ? QColor(80, 120, 60) : QColor(130, 126, 120));
    p.fillRect(0, horizon, width, height - horizon, ground);

    const QColor walls[] = {QColor(236, 222, 196), QColor(214, 170, 140), QColor(245, 245, 240), QColor(200, 190, 170)};
    const QColor wall = walls[variant % 4];
    const int bw = width * (45 + (variant * 7) % 20) / 100;
    const int bh = height * (35 + (variant * 11) % 25) / 100;
    const int bx = (width - bw) / 2 + (variant % 3 - 1) * width / 8;
    const int by = horizon + height / 20 - bh;
    p.fillRect(bx, by, bw, bh, wall);
    QPainterPath roof;
    roof.moveTo(bx - bw / 12, by);
    roof.lineTo(bx + bw / 2, by - bh / 3);
    roof.lineTo(bx + bw + bw / 12, by);
    roof.closeSubpath();
    p.fillPath(roof, QColor(170, 80, 60));
    const int cols = 4 + variant % 3;
    const int rows = 2 + variant % 2;
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < cols; ++c) {
            const int ww = bw / (cols * 2);
            const int wh = bh / (rows * 2 + 1);
            const int wx = bx + ww / 2 + c * bw / cols;
            const int wy = by + wh / 2 + r * bh / rows;
            p.fillRect(wx, wy, ww, wh, QColor(60, 90, 120));
            p.fillRect(wx, wy + wh - wh / 6, ww, wh / 6, QColor(230, 230, 230));
        }
    p.fillRect(bx + bw / 2 - bw / 20, by + bh - bh / 3, bw / 10, bh / 3, QColor(110, 70, 40));
    // A tree for scale.
    p.setBrush(QColor(60, 120, 60));
    p.setPen(Qt::NoPen);
    p.drawEllipse(QPointF(width * 0.12, horizon - height * 0.08), width * 0.07, height * 0.12);
    p.fillRect(int(width * 0.115), horizon - height / 20, width / 100 + 2, height / 12, QColor(90, 60, 40));
    p.end();
    return png(img);
}

QByteArray ReportFixture::logo()
{
    QImage img(480, 160, QImage::Format_ARGB32);
    img.fill(Qt::transparent);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    p.setBrush(QColor(31, 59, 92));
    p.setPen(Qt::NoPen);
    p.drawRoundedRect(QRectF(8, 16, 128, 128), 22, 22);
    QPainterPath house;
    house.moveTo(38, 84);
    house.lineTo(72, 50);
    house.lineTo(106, 84);
    house.lineTo(96, 84);
    house.lineTo(96, 116);
    house.lineTo(48, 116);
    house.lineTo(48, 84);
    house.closeSubpath();
    p.fillPath(house, QColor(200, 162, 74));
    p.fillRect(QRectF(64, 94, 16, 22), QColor(31, 59, 92));
    QFont f(QStringLiteral("DejaVu Sans"));
    f.setBold(true);
    f.setPixelSize(38);
    p.setFont(f);
    p.setPen(QColor(31, 59, 92));
    p.drawText(QRectF(152, 28, 330, 52), Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("Inmobiliaria"));
    f.setPixelSize(30);
    f.setBold(false);
    p.setFont(f);
    p.setPen(QColor(200, 162, 74));
    p.drawText(QRectF(152, 80, 330, 48), Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("Mediterránea"));
    p.end();
    return png(img);
}

void ReportFixture::fill(Tdm& data)
{
    Query e(data.datos, data.Transacion,
            QStringLiteral("UPDATE EMPRESA SET NOMBRE = :NOMBRE, DIRECCION = :DIRECCION, CODPOSTAL = :CP, "
                           "MUNICIPIO = :MUNICIPIO, PROVINCIA = :PROVINCIA, TELEFONO = :TELEFONO, MAIL = :MAIL, "
                           "CIF = :CIF, LOGO = :LOGO"));
    e.paramByName(QStringLiteral("NOMBRE")).setAsString(QStringLiteral("Inmobiliaria Mediterránea"));
    e.paramByName(QStringLiteral("DIRECCION")).setAsString(QStringLiteral("Av. del Puerto, 42"));
    e.paramByName(QStringLiteral("CP")).setAsString(QStringLiteral("46021"));
    e.paramByName(QStringLiteral("MUNICIPIO")).setAsString(QStringLiteral("Valencia"));
    e.paramByName(QStringLiteral("PROVINCIA")).setAsString(QStringLiteral("Valencia"));
    e.paramByName(QStringLiteral("TELEFONO")).setAsString(QStringLiteral("963 123 456"));
    e.paramByName(QStringLiteral("MAIL")).setAsString(QStringLiteral("info@inmomediterranea.es"));
    e.paramByName(QStringLiteral("CIF")).setAsString(QStringLiteral("B46123456"));
    e.paramByName(QStringLiteral("LOGO")).setAsBytes(logo());
    e.exec();

    insert(data, QStringLiteral("AGENTES"),
           {{"CODIGO", 1}, {"APEYNOM", QStringLiteral("Laura Martínez Soler")}, {"USUARIO", QStringLiteral("LAURA")},
            {"TEL_MOVIL", QStringLiteral("600 111 222")}, {"ADMINISTRADOR", QStringLiteral("S")}});
    insert(data, QStringLiteral("AGENTES"),
           {{"CODIGO", 2}, {"APEYNOM", QStringLiteral("Jorge Ibáñez Ruiz")}, {"USUARIO", QStringLiteral("JORGE")},
            {"TEL_MOVIL", QStringLiteral("600 333 444")}, {"ADMINISTRADOR", QStringLiteral("N")}});
    const char* zonas[] = {"Ruzafa", "El Carmen", "Benimaclet", "Campanar"};
    for (int z = 0; z < 4; ++z)
        insert(data, QStringLiteral("ZONAS"), {{"CODIGO", z + 1}, {"DESCRIPCION", QString::fromUtf8(zonas[z])}});

    insert(data, QStringLiteral("PROPIETARIOS"),
           {{"CODIGO", 1}, {"APEYNOM", QStringLiteral("García Pérez, Antonio")}, {"TRATO", QStringLiteral("Sr.")},
            {"NIF", QStringLiteral("12345678Z")}, {"DIRSIGLA", QStringLiteral("CL")}, {"DIR", QStringLiteral("Sueca")},
            {"DIRNUM", QStringLiteral("0014")}, {"DIRPISO", QStringLiteral("2")}, {"DIRLETRA", QStringLiteral("B")},
            {"POB", QStringLiteral("Valencia")}, {"CP", QStringLiteral("46006")}, {"PROVINCIA", QStringLiteral("Valencia")},
            {"PAIS", QStringLiteral("ESPAÑA")}, {"TEL", QStringLiteral("961 222 333")},
            {"TEL_MOVIL", QStringLiteral("655 444 555")}, {"MAIL", QStringLiteral("agarcia@correo.es")},
            {"FECHA_ALTA", at(2025, 11, 3)}, {"SITUACION", QStringLiteral("Activo")}, {"CODAGENTE", 1},
            {"OBSERVACIONES", QStringLiteral("Prefiere que le llamen por la tarde.")}});
    insert(data, QStringLiteral("CLIENTES"),
           {{"CODIGO", 1}, {"APEYNOM", QStringLiteral("Fernández López, María")}, {"TRATO", QStringLiteral("Sra.")},
            {"NIF", QStringLiteral("87654321X")}, {"DIRSIGLA", QStringLiteral("AV")}, {"DIR", QStringLiteral("Blasco Ibáñez")},
            {"DIRNUM", QStringLiteral("0101")}, {"POB", QStringLiteral("Valencia")}, {"CP", QStringLiteral("46022")},
            {"PROVINCIA", QStringLiteral("Valencia")}, {"PAIS", QStringLiteral("ESPAÑA")},
            {"TEL", QStringLiteral("963 555 666")}, {"TEL_MOVIL", QStringLiteral("677 888 999")},
            {"MAIL", QStringLiteral("maria.fernandez@correo.es")}, {"FECHAALTA", at(2026, 1, 15)},
            {"SITUACION", QStringLiteral("Activo")}, {"CODAGENTE", 1}, {"SEXO", QStringLiteral("M")},
            {"ESTADO_CIVIL", QStringLiteral("Casada")}, {"CODPROCEDENCIA", 1},
            {"OBSERVACIONES", QStringLiteral("Busca piso con ascensor cerca del metro.")}});
    insert(data, QStringLiteral("CLIENTES"),
           {{"CODIGO", 2}, {"APEYNOM", QStringLiteral("Navarro Gil, Pedro")}, {"DIRSIGLA", QStringLiteral("CL")},
            {"DIR", QStringLiteral("Colón")}, {"POB", QStringLiteral("Valencia")}, {"PROVINCIA", QStringLiteral("Valencia")},
            {"TEL_MOVIL", QStringLiteral("611 222 333")}, {"MAIL", QStringLiteral("pnavarro@correo.es")},
            {"FECHAALTA", at(2026, 2, 2)}, {"SITUACION", QStringLiteral("Activo")}, {"CODAGENTE", 2}});
    insert(data, QStringLiteral("CLIENTES"),
           {{"CODIGO", 3}, {"APEYNOM", QStringLiteral("Peña Ortiz, Lucía")}, {"DIRSIGLA", QStringLiteral("PZ")},
            {"DIR", QStringLiteral("Redonda")}, {"POB", QStringLiteral("Valencia")}, {"PROVINCIA", QStringLiteral("Valencia")},
            {"TEL", QStringLiteral("962 000 111")}, {"FECHAALTA", at(2026, 2, 20)}, {"SITUACION", QStringLiteral("Activo")}});

    auto inmueble = [&data](const QString& codigo, int tipo, int operacion, double precio, QVariantMap extra) {
        QVariantMap row{{"CODIGO", codigo}, {"CODTIPOINMUEBLE", tipo}, {"CODTIPOOPERACION", operacion},
                        {"EUROIMPORTE", precio}, {"ACTIVADO", QStringLiteral("S")}, {"CODESTADO", 1},
                        {"CODPROPIETARIO", 1}, {"CODAGENTE", 1}, {"MUNICIPIO", QStringLiteral("Valencia")},
                        {"PROVINCIA", QStringLiteral("Valencia")}, {"FECHAALTA", at(2026, 1, 10)}};
        for (auto it = extra.cbegin(); it != extra.cend(); ++it)
            row.insert(it.key(), it.value());
        insert(data, QStringLiteral("INMUEBLES"), row);
    };
    const QString S = QStringLiteral("S");
    inmueble(QStringLiteral("00001"), 1, 1, 185000,
             {{"CODTIPOZONA", 1}, {"TIPOVIA", QStringLiteral("CL")}, {"NOMBREVIA", QStringLiteral("Sueca")},
              {"NUMERO", QStringLiteral("14")}, {"PLANTA", QStringLiteral("3")}, {"PUERTA", QStringLiteral("B")},
              {"CP", QStringLiteral("46006")}, {"CSUPER1", 95.0}, {"CSUPERF1", 82.5}, {"CHABDOBLES", 2},
              {"CHABSENCILLAS", 1}, {"CNUMBANOS", 2}, {"CASCENSOR", S}, {"CCALEFACCION", S},
              {"SCALEFACCION", QStringLiteral("Gas natural")}, {"CAIRE", S}, {"CTERRAZA", S},
              {"STERRAZA", QStringLiteral("12 m²")}, {"CEXTERIOR", S}, {"CARMARIOS", S}, {"CSUELO", S},
              {"SSUELO", QStringLiteral("Parquet")}, {"CCOCINA", S}, {"SCOCINA", QStringLiteral("Con office")},
              {"CPUERTABLINDADA", S}, {"CVIDRIOSDOBLES", S}, {"CDISPONIBLE", S}, {"CSEPUEDEVISITAR", S},
              {"SSEPUEDEVISITAR", QStringLiteral("Tardes")}, {"EXCLUSIVA", S}, {"ENERGETICA", QStringLiteral("E")},
              {"CONSUMO", QStringLiteral("145 kWh/m²")}, {"EMISIONES", QStringLiteral("31 kg CO2/m²")},
              {"SANOCONSTRUCCION", QStringLiteral("1972")},
              {"CARTELES_INFORMACION",
               QStringLiteral("Luminoso piso reformado en pleno barrio de Ruzafa, a dos minutos del mercado. Salón "
                              "comedor con salida a terraza, cocina con office, tres dormitorios y dos baños completos. "
                              "Finca con ascensor, muy bien comunicada con metro y autobús.")},
              {"OBSERVACIONES_TEXTO", QStringLiteral("Gastos de comunidad de 45 € al mes. IBI anual de 320 €.")},
              {"OBSERVA_INTERNAS_TEXTO", QStringLiteral("El propietario acepta ofertas a partir de 175.000 €.")}});
    inmueble(QStringLiteral("00002"), 9, 1, 420000,
             {{"CODTIPOZONA", 4}, {"CSUPER1", 240.0}, {"CSUPSOLAR", 800.0}, {"CHABDOBLES", 4}, {"CNUMBANOS", 3},
              {"CPISCINA", S}, {"CJARDIN", S}, {"CGARAJE", S}, {"SGARAJE", QStringLiteral("2 plazas")},
              {"ENERGETICA", QStringLiteral("B")},
              {"CARTELES_INFORMACION", QStringLiteral("Chalet independiente con piscina y jardín de 800 m².")}});
    inmueble(QStringLiteral("00003"), 19, 2, 2500,
             {{"CSUPER1", 1200.0}, {"CSUPSOLAR", 2000.0}, {"CSUPER3", 8.5}, {"CMUELLE", S}, {"COFICINA", S},
              {"CSALIDAHUMOS", S}, {"MUNICIPIO", QStringLiteral("Paterna")}});
    inmueble(QStringLiteral("00004"), 21, 3, 45000,
             {{"CODTIPOZONA", 2}, {"CSUPER1", 120.0}, {"CANCHO", 8.0}, {"CESCAPARATE", S}, {"CSALIDAHUMOS", S},
              {"SESCAPARATE", QStringLiteral("Dos escaparates")}});
    inmueble(QStringLiteral("00005"), 23, 2, 90, {{"CODTIPOZONA", 3}, {"CPLAZAS", 1}, {"CSUPER1", 12.0}, {"CCERRADO", S}});
    inmueble(QStringLiteral("00006"), 16, 1, 150000,
             {{"CSUPER1", 600.0}, {"CSUPER2", 600.0}, {"CSUPER3", 900.0}, {"SOLAR_CLASESUELO", QStringLiteral("Urbano")},
              {"SOLAR_USOS", QStringLiteral("Residencial plurifamiliar")}, {"SOLAR_COEFICIENTE", 1.5},
              {"CURBANIZADO", S}, {"MUNICIPIO", QStringLiteral("Burjassot")}});
    inmueble(QStringLiteral("00007"), 25, 1, 2350000,
             {{"CSUPER1", 1450.0}, {"EDIFICIO_NUMVIVIENDAS", 12}, {"EDIFICIO_PLANTASSOBRERESANTA", 5},
              {"EDIFICIO_ANOCONSTRUCCION", 1965}, {"EDIFICIO_USOACTUAL", QStringLiteral("Residencial")}, {"CASCENSOR", S}});
    inmueble(QStringLiteral("00008"), 27, 1, 320000,
             {{"CSUPER1", 150000.0}, {"RUSTICA_CULTIVO", QStringLiteral("Naranjos")},
              {"RUSTICA_ACCESO", QStringLiteral("Camino asfaltado")}, {"RUSTICA_PRECIOHEC", 21333.33}, {"CAGUA", S},
              {"MUNICIPIO", QStringLiteral("Alzira")}});

    int id = 1;
    for (int i = 0; i < 5; ++i)
        insertImage(data, id++, 1, photo(i));
    for (int codigo = 2; codigo <= 8; ++codigo)
        insertImage(data, id++, codigo, photo(codigo, 320, 240));

    insert(data, QStringLiteral("GESTIONES"),
           {{"CODIGO", 1}, {"CODTIPOGESTION", 2}, {"ASUNTO", QStringLiteral("Visita con la clienta al piso de Ruzafa")},
            {"FECHA", at(2026, 3, 10)}, {"HORA", QStringLiteral("10:30")}, {"CODCLIENTE", 1},
            {"CODINMUEBLE", QStringLiteral("00001")}, {"CODAGENTE", 1}, {"CODAGENTE_REGISTRADOR", 1},
            {"PENDIENTE", QStringLiteral("N")}, {"CONFIRMADA", S}, {"AGENDA", QStringLiteral("N")},
            {"RESULTADO", QStringLiteral("Le ha gustado mucho; pide una segunda visita con su marido.")}});
    insert(data, QStringLiteral("GESTIONES"),
           {{"CODIGO", 2}, {"CODTIPOGESTION", 1}, {"ASUNTO", QStringLiteral("Llamada para confirmar la segunda visita")},
            {"FECHA", at(2026, 3, 12)}, {"HORA", QStringLiteral("17:00")}, {"CODCLIENTE", 1},
            {"CODINMUEBLE", QStringLiteral("00001")}, {"CODAGENTE", 2}, {"PENDIENTE", S}});
    insert(data, QStringLiteral("GESTIONES"),
           {{"CODIGO", 3}, {"CODTIPOGESTION", 3}, {"ASUNTO", QStringLiteral("Oferta de 400.000 € por el chalet")},
            {"FECHA", at(2026, 3, 14)}, {"HORA", QStringLiteral("12:00")}, {"CODCLIENTE", 2},
            {"CODINMUEBLE", QStringLiteral("00002")}, {"CODAGENTE", 2}, {"PENDIENTE", S}});

    insert(data, QStringLiteral("INMUEBLES_GASTOS"),
           {{"CODIGO", QStringLiteral("00001")}, {"CODINMUEBLE", QStringLiteral("00001")},
            {"DESCRIPCION", QStringLiteral("Anuncio en portales, marzo")}, {"IMPORTE", 150.0},
            {"TIPOGASTO", QStringLiteral("PUBLICIDAD")}, {"FECHA", at(2026, 3, 1)}});
    insert(data, QStringLiteral("INMUEBLES_GASTOS"),
           {{"CODIGO", QStringLiteral("00002")}, {"CODINMUEBLE", QStringLiteral("00001")},
            {"DESCRIPCION", QStringLiteral("Certificado de eficiencia energética")}, {"IMPORTE", 1234.56},
            {"TIPOGASTO", QStringLiteral("CERTIFICADO ENERGETICO")}, {"FECHA", at(2026, 2, 20)}});
    insert(data, QStringLiteral("INMUEBLES_GASTOS"),
           {{"CODIGO", QStringLiteral("00003")}, {"CODINMUEBLE", QStringLiteral("00001")},
            {"DESCRIPCION", QStringLiteral("Devolución de fianza de llaves")}, {"IMPORTE", -50.0},
            {"TIPOGASTO", QStringLiteral("LLAVES")}, {"FECHA", at(2026, 3, 5)}});

    insert(data, QStringLiteral("AGENDAX"),
           {{"ID", 1}, {"INICIO", at(2026, 3, 10, 10, 30)}, {"FINISH", at(2026, 3, 10, 11, 15)},
            {"CAPTION", QStringLiteral("Visita piso Ruzafa con María Fernández")},
            {"LOCATION", QStringLiteral("VISITA A INMUEBLE")}, {"CODUSUARIO", QStringLiteral("LAURA")}, {"CODCLIENTE", 1}});
    insert(data, QStringLiteral("AGENDAX"),
           {{"ID", 2}, {"INICIO", at(2026, 3, 11, 9, 0)}, {"FINISH", at(2026, 3, 11, 10, 0)},
            {"CAPTION", QStringLiteral("Tasación del chalet de Campanar")}, {"LOCATION", QStringLiteral("TASACION")},
            {"CODUSUARIO", QStringLiteral("JORGE")}});
    insert(data, QStringLiteral("AGENDAX"),
           {{"ID", 3}, {"INICIO", at(2026, 3, 12, 17, 0)}, {"FINISH", at(2026, 3, 12, 18, 0)},
            {"CAPTION", QStringLiteral("Firma de arras")}, {"LOCATION", QStringLiteral("FIRMA")},
            {"CODUSUARIO", QStringLiteral("LAURA")}});

    auto operacion = [&data](int codigo, int agente, const QString& anomes, double precio, double importe) {
        insert(data, QStringLiteral("OPERACIONES"),
               {{"CODOPERACION", codigo}, {"CODCLIENTE", 1}, {"CODAGENTE", agente}, {"ANOMES", anomes},
                {"FECHAALTA", at(2026, 1, 5)}, {"IMPORTEINMUEBLE", precio}, {"IMPORTEOPERACION", importe},
                {"CODINMUEBLE", QStringLiteral("00001")}, {"TIPOOPERACION", QStringLiteral("VENTA")}});
    };
    operacion(1, 1, QStringLiteral("2026/01"), 185000, 5550);
    operacion(2, 1, QStringLiteral("2026/02"), 240000, 7200);
    operacion(3, 2, QStringLiteral("2026/02"), 99000.5, 2970.25);

    insert(data, QStringLiteral("DEMANDAS"),
           {{"CODIGO", 1}, {"CODCLIENTE", 1}, {"CODOPERACION", 1}, {"CODINMUEBLE1", 1}, {"CODINMUEBLE2", 2},
            {"POBLACION1", QStringLiteral("Valencia")}, {"CODZONA", 1}, {"PRECIODESDE", 150000.0},
            {"PRECIOHASTA", 200000.0}, {"SDESDEHABITACIONES", 3}, {"FECHAALTA", at(2026, 1, 15)},
            {"SITUACION", QStringLiteral("Activo")}, {"CODAGENTE", 1}});
    insert(data, QStringLiteral("DESCARTES"),
           {{"CODIGO", 1}, {"CODCLIENTE", 3}, {"CODINMUEBLE", QStringLiteral("00001")},
            {"MOTIVO", QStringLiteral("Le parece caro")}, {"FECHA", at(2026, 3, 1)}});
    data.Transacion.commitRetaining();
}

} // namespace tv::test
