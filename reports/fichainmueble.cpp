#include "reportdata.h"

#include "datoshelpers.h"
#include "descripciones.h"
#include "dm.h"
#include "fichafamilia.h"
#include "report.h"
#include "reportformat.h"

namespace tv::reports {

namespace {

using Medida = FichaFamilia::Medida;

// The large figures at the top of a sheet, per template.
struct Cifra {
    const char* columna;
    const char* etiqueta;
    Medida medida;
};

QVector<Cifra> cifrasDe(int plantilla)
{
    switch (plantilla) {
    case 2:
    case 3:
        return {{"CSUPER1", "construidos", Medida::Metros},
                {"CSUPSOLAR", "de parcela", Medida::Metros},
                {"#DORMITORIOS", "dormitorios", Medida::Entero},
                {"CNUMBANOS", "baños", Medida::Entero}};
    case 4:
        return {{"CSUPER1", "construidos", Medida::Metros},
                {"CSUPSOLAR", "de parcela", Medida::Metros},
                {"CSUPER3", "altura libre", Medida::MetrosLineales}};
    case 5:
        return {{"CSUPER1", "construidos", Medida::Metros},
                {"CANCHO", "de fachada", Medida::MetrosLineales},
                {"CNUMBANOS", "baños", Medida::Entero}};
    case 6:
        return {{"CPLAZAS", "plazas", Medida::Entero}, {"CSUPER1", "superficie", Medida::Metros}};
    case 7:
        return {{"CSUPER1", "superficie total", Medida::Metros},
                {"CSUPER2", "de parcela", Medida::Metros},
                {"CSUPER3", "de techo", Medida::Metros}};
    case 8:
        return {{"CSUPER1", "construidos", Medida::Metros},
                {"EDIFICIO_PLANTASSOBRERESANTA", "plantas", Medida::Entero},
                {"EDIFICIO_NUMVIVIENDAS", "viviendas", Medida::Entero}};
    case 9:
        return {{"CSUPER1", "superficie total", Medida::Metros},
                {"RUSTICA_PRECIOHEC", "por hectárea", Medida::Euros}};
    default:
        return {{"CSUPER1", "construidos", Medida::Metros},
                {"#DORMITORIOS", "dormitorios", Medida::Entero},
                {"CNUMBANOS", "baños", Medida::Entero},
                {"PLANTA", "planta", Medida::Texto}};
    }
}

QVariant columna(const Query& q, const char* name)
{
    if (QLatin1String(name) == QLatin1String("#DORMITORIOS")) {
        qlonglong total = 0;
        bool any = false;
        for (const char* c : {"CHABDOBLES", "CHABSENCILLAS", "CNUMSUITE"}) {
            const Field f = q.fieldByName(QLatin1String(c));
            if (!f.isNull()) {
                total += f.asInt64();
                any = true;
            }
        }
        return any ? QVariant(total) : QVariant();
    }
    const int i = q.fieldIndex(QLatin1String(name));
    return i < 0 ? QVariant() : q.field(i).value();
}

QString valor(const QVariant& v, Medida medida)
{
    switch (medida) {
    case Medida::Texto: {
        if (v.typeId() == QMetaType::Double)
            return numero(v, 2);
        return texto(v);
    }
    case Medida::Entero:
        return numero(v, 0);
    case Medida::Numero:
        return numero(v, 2);
    case Medida::Metros:
        return metros(v);
    case Medida::MetrosLineales: {
        const QString n = numero(v, 2);
        return n.isEmpty() ? n : n + QStringLiteral(" m");
    }
    case Medida::Euros: {
        const QString n = numero(v, 2);
        return n.isEmpty() ? n : euros(v);
    }
    case Medida::Porcentaje: {
        const QString n = numero(v, 2);
        return n.isEmpty() ? n : n + QStringLiteral(" %");
    }
    case Medida::Anyo: {
        const int y = v.toInt();
        return y > 0 ? QString::number(y) : QString();
    }
    }
    return {};
}

QVariantList datosDe(const Query& q, const QVector<FichaFamilia::Dato>& datos)
{
    QVariantList out;
    for (const auto& d : datos) {
        const QString v = valor(columna(q, d.columna), d.medida);
        if (!v.isEmpty())
            out.append(QVariantMap{{QStringLiteral("etiqueta"), QString::fromUtf8(d.etiqueta)},
                                   {QStringLiteral("valor"), v}});
    }
    return out;
}

// Two label/value pairs per row, for the two-column data tables.
QVariantList enParejas(const QVariantList& datos)
{
    QVariantList filas;
    for (int i = 0; i < datos.size(); i += 2) {
        const QVariantMap a = datos.at(i).toMap();
        QVariantMap fila{{QStringLiteral("a_etiqueta"), a.value(QStringLiteral("etiqueta"))},
                         {QStringLiteral("a_valor"), a.value(QStringLiteral("valor"))}};
        if (i + 1 < datos.size()) {
            const QVariantMap b = datos.at(i + 1).toMap();
            fila.insert(QStringLiteral("b_etiqueta"), b.value(QStringLiteral("etiqueta")));
            fila.insert(QStringLiteral("b_valor"), b.value(QStringLiteral("valor")));
        }
        filas.append(fila);
    }
    return filas;
}

QVariantList caracteristicasDe(const Query& q, const QVector<FichaFamilia::Caracteristica>& lista)
{
    QVariantList out;
    for (const auto& c : lista) {
        const int i = q.fieldIndex(QLatin1String(c.marca));
        if (i < 0 || q.field(i).asString().trimmed() != QLatin1String("S"))
            continue;
        QString detalle;
        if (c.detalle) {
            const QVariant d = columna(q, c.detalle);
            detalle = d.typeId() == QMetaType::Double ? numero(d, 2) : texto(d);
            // A one-letter remark is an unused flag column, not a remark.
            if (detalle == QLatin1String("S") || detalle == QLatin1String("N"))
                detalle.clear();
        }
        out.append(QVariantMap{{QStringLiteral("nombre"), QString::fromUtf8(c.nombre)},
                               {QStringLiteral("detalle"), detalle}});
    }
    return out;
}

QVariantMap certificadoEnergetico(const Query& q)
{
    const QString letra = q.fieldByName(QStringLiteral("ENERGETICA")).asString().trimmed().toUpper();
    static const QMap<QString, QPair<const char*, const char*>> colores = {
        {QStringLiteral("A"), {"#009a49", "#ffffff"}}, {QStringLiteral("B"), {"#4cb748", "#ffffff"}},
        {QStringLiteral("C"), {"#bed630", "#1f2933"}}, {QStringLiteral("D"), {"#ffe600", "#1f2933"}},
        {QStringLiteral("E"), {"#fbb900", "#1f2933"}}, {QStringLiteral("F"), {"#ee7219", "#ffffff"}},
        {QStringLiteral("G"), {"#e30613", "#ffffff"}},
    };
    QVariantMap e;
    if (letra.isEmpty())
        return e;
    const auto color = colores.value(letra.left(1), {"#8a94a6", "#ffffff"});
    e.insert(QStringLiteral("letra"), letra);
    e.insert(QStringLiteral("fondo"), QString::fromLatin1(color.first));
    e.insert(QStringLiteral("color"), QString::fromLatin1(color.second));
    e.insert(QStringLiteral("consumo"), q.fieldByName(QStringLiteral("CONSUMO")).asString().trimmed());
    e.insert(QStringLiteral("emisiones"), q.fieldByName(QStringLiteral("EMISIONES")).asString().trimmed());
    e.insert(QStringLiteral("tramite"), letra.size() > 1 || !colores.contains(letra));
    return e;
}

QVariantMap fotosDe(Tdm& data, const QString& codigo)
{
    QVariantMap fotos;
    bool numeric = false;
    const int key = codigo.toInt(&numeric);
    if (!numeric || !data.Imagenes.isOpen())
        return fotos;
    Query q(data.Imagenes, data.Transacion,
            QStringLiteral("SELECT ID, PICTURE FROM IMAGENES WHERE CODINMUEBLE = :CODINMUEBLE ORDER BY ID"));
    q.paramByName(QStringLiteral("CODINMUEBLE")).setAsInteger(key);
    QVariantList miniaturas;
    QString principal;
    int numero = 0;
    // One large photograph and up to eight thumbnails fit the first page.
    for (q.open(); !q.eof() && numero < 9; q.next()) {
        const QByteArray bytes = q.fieldByName(QStringLiteral("PICTURE")).asBytes();
        if (bytes.isEmpty())
            continue;
        if (principal.isEmpty()) {
            principal = imagenDataUri(bytes, 960, 720);
            if (!principal.isEmpty())
                ++numero;
            continue;
        }
        const QString mini = imagenDataUri(bytes, 328, 208);
        if (mini.isEmpty())
            continue;
        miniaturas.append(QVariantMap{{QStringLiteral("src"), mini}});
        ++numero;
    }
    q.close();
    fotos.insert(QStringLiteral("principal"), principal);
    fotos.insert(QStringLiteral("miniaturas"), miniaturas);
    fotos.insert(QStringLiteral("filas_miniaturas"), enFilas(miniaturas, 4));
    fotos.insert(QStringLiteral("numero"), numero);
    return fotos;
}

int plantillaDe(Tdm& data, const QVariant& tipoInmueble)
{
    Query q(data.datos, data.Transacion,
            QStringLiteral("SELECT F.CODPLANTILLA FROM FAMILIA F , tipoinmueble I WHERE F.codigo = I.codfamilia and "
                           "i.CODIGO =:CODIGO "));
    q.paramByName(QStringLiteral("CODIGO")).setValue(tipoInmueble);
    q.open();
    int plantilla = q.eof() || q.field(0).isNull() ? 0 : q.field(0).asInteger();
    q.close();
    if (plantilla > 0)
        return plantilla;
    Query f(data.datos, data.Transacion, QStringLiteral("SELECT CODFAMILIA FROM TIPOINMUEBLE WHERE CODIGO = :CODIGO"));
    f.paramByName(QStringLiteral("CODIGO")).setValue(tipoInmueble);
    f.open();
    plantilla = FichaFamilia::plantillaDeFamilia(f.eof() ? 0 : f.field(0).asInteger());
    f.close();
    return plantilla;
}

QVariant tipoDelInmueble(Tdm& data, const QString& codigo)
{
    Query q(data.datos, data.Transacion, QStringLiteral("SELECT CODTIPOINMUEBLE FROM INMUEBLES WHERE CODIGO = :CODIGO"));
    q.paramByName(QStringLiteral("CODIGO")).setAsString(codigo);
    q.open();
    if (q.eof())
        throw ReportError(QStringLiteral("No existe el inmueble %1.").arg(codigo));
    const QVariant tipo = q.field(0).value();
    q.close();
    return tipo;
}

} // namespace

QString plantillaFicha(Tdm& data, const QString& codigoInmueble)
{
    const QString codigo = normalizarCodigo(codigoInmueble);
    return FichaFamilia::dePlantilla(plantillaDe(data, tipoDelInmueble(data, codigo))).nombrePlantilla;
}

QVariantMap datosFichaInmueble(Tdm& data, const QString& codigoInmueble)
{
    const QString codigo = normalizarCodigo(codigoInmueble);
    Query q;
    abrirInmueble(q, data, codigo);

    Descripciones desc(data);
    auto col = [&q](const char* c) { return q.fieldByName(QLatin1String(c)).value(); };
    const int plantilla = plantillaDe(data, col("CODTIPOINMUEBLE"));
    const FichaFamilia& familia = FichaFamilia::dePlantilla(plantilla);

    QVariantMap i;
    const QString tipo = desc.tipoInmueble(col("CODTIPOINMUEBLE"));
    const QString operacion = desc.tipoOperacion(col("CODTIPOOPERACION"));
    const QString municipio = texto(col("MUNICIPIO"));
    const QString zona = desc.zona(col("CODTIPOZONA"));
    i.insert(QStringLiteral("codigo"), codigo);
    i.insert(QStringLiteral("referencia"), QStringLiteral("Ref. ") + codigo);
    i.insert(QStringLiteral("tipo"), tipo);
    i.insert(QStringLiteral("operacion"), operacion);
    i.insert(QStringLiteral("titulo"),
             unir({tipo, operacion.isEmpty() ? QString() : QStringLiteral("en ") + operacion.toLower(),
                   municipio.isEmpty() ? QString() : QStringLiteral("en ") + municipio}));
    i.insert(QStringLiteral("estado"), desc.estado(col("CODESTADO")));
    i.insert(QStringLiteral("zona"), zona);
    i.insert(QStringLiteral("municipio"), municipio);
    i.insert(QStringLiteral("provincia"), texto(col("PROVINCIA")));
    i.insert(QStringLiteral("cp"), texto(col("CP")));
    i.insert(QStringLiteral("direccion"), direccionInmueble(q));
    i.insert(QStringLiteral("ubicacion"),
             unir({zona, unir({texto(col("CP")), municipio}),
                   texto(col("PROVINCIA")).compare(municipio, Qt::CaseInsensitive) == 0
                       ? QString()
                       : texto(col("PROVINCIA"))},
                  QStringLiteral(" · ")));
    i.insert(QStringLiteral("apartamento"), texto(col("NOMBRE_APARTAMENTO")));
    i.insert(QStringLiteral("precio"), numero(col("EUROIMPORTE"), 2).isEmpty() ? QString() : euros(col("EUROIMPORTE")));
    i.insert(QStringLiteral("fecha_alta"), fecha(col("FECHAALTA")));
    i.insert(QStringLiteral("exclusiva"), texto(col("EXCLUSIVA")) == QLatin1String("S"));
    i.insert(QStringLiteral("obra_nueva"), texto(col("CNUEVA_CONSTRUCCION")) == QLatin1String("S"));
    i.insert(QStringLiteral("descripcion"), textoPlano(texto(col("CARTELES_INFORMACION"))));
    QString observaciones = textoPlano(texto(col("OBSERVACIONES_TEXTO")));
    if (observaciones.isEmpty())
        observaciones = textoPlano(texto(col("OBSERVACIONES")));
    i.insert(QStringLiteral("observaciones"), observaciones);
    i.insert(QStringLiteral("video"), texto(col("YOUTUBE")));
    i.insert(QStringLiteral("visita_virtual"), texto(col("VIRTUAL")));
    i.insert(QStringLiteral("referencia_catastral"), texto(col("REFCATASTRAL")));
    i.insert(QStringLiteral("familia"), familia.nombrePlantilla.mid(9));
    i.insert(QStringLiteral("plantilla"), familia.nombrePlantilla);

    QVariantList cifras;
    for (const Cifra& c : cifrasDe(plantilla)) {
        const QString v = valor(columna(q, c.columna), c.medida);
        if (!v.isEmpty())
            cifras.append(QVariantMap{{QStringLiteral("valor"), v}, {QStringLiteral("etiqueta"), QString::fromUtf8(c.etiqueta)}});
    }
    i.insert(QStringLiteral("cifras"), cifras);

    const QVariantList datos = datosDe(q, familia.datos);
    i.insert(QStringLiteral("datos"), datos);
    i.insert(QStringLiteral("datos_pares"), enParejas(datos));
    const QVariantList datosFamilia = datosDe(q, familia.datosFamilia);
    i.insert(QStringLiteral("titulo_datos_familia"), familia.tituloDatosFamilia);
    i.insert(QStringLiteral("titulo_datos"), familia.tituloDatos);
    i.insert(QStringLiteral("titulo_caracteristicas"), familia.tituloCaracteristicas);
    i.insert(QStringLiteral("datos_familia"), datosFamilia);
    i.insert(QStringLiteral("datos_familia_pares"), enParejas(datosFamilia));
    const QVariantList caracteristicas = caracteristicasDe(q, familia.caracteristicas);
    i.insert(QStringLiteral("caracteristicas"), caracteristicas);
    i.insert(QStringLiteral("caracteristicas_filas"), enFilas(caracteristicas, 3));
    const QVariantList disponibilidad = caracteristicasDe(q, FichaFamilia::disponibilidad());
    i.insert(QStringLiteral("disponibilidad"), disponibilidad);
    i.insert(QStringLiteral("energia"), certificadoEnergetico(q));
    // Headings print only over something: templates test these flags.
    i.insert(QStringLiteral("hay_datos"), !datos.isEmpty());
    i.insert(QStringLiteral("hay_datos_familia"), !datosFamilia.isEmpty());
    i.insert(QStringLiteral("hay_caracteristicas"), !caracteristicas.isEmpty());
    i.insert(QStringLiteral("hay_disponibilidad"), !disponibilidad.isEmpty());

    QVariantMap agente;
    const QVariant codAgente = col("CODAGENTE");
    if (codAgente.toInt() > 0) {
        agente.insert(QStringLiteral("nombre"), desc.agente(codAgente));
        const QString movil = desc.of(QStringLiteral("AGENTES"), codAgente, QStringLiteral("TEL_MOVIL"));
        agente.insert(QStringLiteral("telefono"),
                      movil.isEmpty() ? desc.of(QStringLiteral("AGENTES"), codAgente, QStringLiteral("TEL")) : movil);
    }
    i.insert(QStringLiteral("agente"), agente);
    i.insert(QStringLiteral("campos"), camposFila(q));
    q.close();

    QVariantMap out;
    out.insert(QStringLiteral("inmueble"), i);
    out.insert(QStringLiteral("fotos"), fotosDe(data, codigo));
    out.insert(QStringLiteral("empresa"), agencyData(data));
    return out;
}

} // namespace tv::reports
