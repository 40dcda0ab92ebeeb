#include "inmuebles.h"

#include "currentagent.h"
#include "dataset.h"
#include "dm.h"
#include "money.h"
#include "query.h"
#include "sqltext.h"

#include <QDir>
#include <QRegularExpression>

#include <cmath>

namespace tv::registro {

namespace {

const QString kCodigo = QStringLiteral("CODIGO");

bool vacio(const QVariant& v)
{
    return !v.isValid() || v.isNull() || v.toString().trimmed().isEmpty();
}

} // namespace

QString consultaInmuebles()
{
    return QLatin1String(kSelectInmuebles) + QLatin1Char(' ') + QLatin1String(kWhereActivos) + QLatin1Char(' ') +
           QLatin1String(kOrderInmuebles);
}

QString consultaInmuebles(const QString& condicion)
{
    return QLatin1String(kSelectInmuebles) + QLatin1Char(' ') + condicion + QStringLiteral(" order by codigo");
}

const QStringList& columnasRusas()
{
    static const QStringList l = {"CARTELES_INFORMARUS", "CARTELES_CABECERARUS", "CARTELES_PIERUS"};
    return l;
}

SentenciasInmuebles sentenciasInmuebles(Database& db, Transaction& tr)
{
    Query q(db, tr,
            QStringLiteral("SELECT TRIM(RDB$FIELD_NAME) FROM RDB$RELATION_FIELDS "
                           "WHERE RDB$RELATION_NAME = 'INMUEBLES' ORDER BY RDB$FIELD_POSITION"));
    QStringList cols, todas;
    for (q.open(); !q.eof(); q.next()) {
        const QString c = q.field(0).asString().trimmed();
        todas.append(c);
        if (!columnasRusas().contains(c))
            cols.append(c);
    }
    q.close();
    QStringList sets, params;
    for (const QString& c : cols)
        sets.append(c + QStringLiteral(" = :") + c);
    // A new property is written whole, its Russian texts included.
    for (const QString& c : todas)
        params.append(QLatin1Char(':') + c);
    const QString where = QStringLiteral(" WHERE CODIGO = :OLD_CODIGO");
    SentenciasInmuebles s;
    s.refresh = QStringLiteral("SELECT ") + cols.join(QStringLiteral(", ")) + QStringLiteral(" FROM INMUEBLES") + where;
    s.modify = QStringLiteral("UPDATE INMUEBLES SET ") + sets.join(QStringLiteral(", ")) + where;
    s.insert = QStringLiteral("INSERT INTO INMUEBLES (") + todas.join(QStringLiteral(", ")) + QStringLiteral(") VALUES (") +
               params.join(QStringLiteral(", ")) + QLatin1Char(')');
    s.remove = QStringLiteral("DELETE FROM INMUEBLES") + where;
    return s;
}

QString rellenarExpediente(const QString& tecleado)
{
    const QString t = tecleado.trimmed().left(5);
    if (t.isEmpty())
        return t;
    return t.rightJustified(5, QLatin1Char('0'));
}

int numeroExpediente(const QString& codigo)
{
    bool ok = false;
    const int n = codigo.trimmed().toInt(&ok);
    return ok && n >= 0 ? n : -1;
}

QString normalizarVideo(const QString& enlace)
{
    QString v = enlace;
    v.remove(QStringLiteral("&feature=youtu.be"));
    v.replace(QStringLiteral("watch?v="), QStringLiteral("embed/"));
    return v;
}

QString paginaVideo(const QString& enlace)
{
    const QString src = normalizarVideo(enlace.trimmed()).toHtmlEscaped();
    return QStringLiteral("<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>Video del inmueble</title>"
                          "<style>html,body{margin:0;height:100%;background:#000}"
                          "iframe{border:0;width:100%;height:100%}</style></head>\n<body>"
                          "<iframe src=\"%1\" allow=\"autoplay; encrypted-media; fullscreen\" allowfullscreen>"
                          "</iframe></body></html>\n")
        .arg(src);
}

double honorarioCalculado(const QVariant& venta, const QVariant& sobre, const QVariant& porcentaje)
{
    // In exact ten-thousandths, so 1.5 % of 333.33 is 4.99995 and rounds to 5.00.
    const __int128 v = Money::fromDouble(venta.toDouble()).raw();
    const __int128 s = Money::fromDouble(sobre.toDouble()).raw();
    const __int128 p = Money::fromDouble(porcentaje.toDouble()).raw();
    // venta * 10^6 and sobre * porcentaje / 100 are both in units of 10^-10.
    const __int128 total = v * 1000000 + s * p;
    const __int128 unidad = 100000000; // 10^-2 in units of 10^-10
    const __int128 mitad = unidad / 2;
    const __int128 centimos = total >= 0 ? (total + mitad) / unidad : -((-total + mitad) / unidad);
    return static_cast<double>(static_cast<long long>(centimos)) / 100.0;
}

QString tituloCartera(const QString& captador, const QString& apartamento)
{
    QString t = QStringLiteral("Cartera de Inmuebles");
    const QString c = captador.trimmed();
    const QString a = apartamento.trimmed();
    if (!c.isEmpty())
        t += QStringLiteral(" CAPTADOR: ") + c;
    if (!a.isEmpty())
        t += (c.isEmpty() ? QStringLiteral(" Apartamento: ") : QStringLiteral(" / Apartamento: ")) + a;
    return t;
}

const QStringList& banderasNuevoInmueble()
{
    static const QStringList l = {
        "CADSL", "CAGUA", "CAIRE", "CAISLANTE", "CALCANTARILLADO", "CALTILLO", "CALUMBRADO", "CARMARIOS",
        "CASCENSOR", "CASFALTADO", "CCAJAFUERTE", "CCARPEXT", "CCARPINT", "CCERRADO", "CCHIMENEA",
        "CCLASENEGOCIO", "CCOCINA", "CCOLUMNAS", "CCOMEDOR", "CDIVISIBLE", "CESCAPARATE", "CESQUINA", "CGAS",
        "CGASTOSCOMUNIDAD", "CINTRANET", "CJARDIN", "CLAVADERO", "CLUZ", "CMUEBLES", "CMUELLE", "COFICINA",
        "CORIENTACION", "CPINTURA", "CPISCINA", "CPLANTABAJA", "CPUERTABLINDADA", "CSALIDAEMERGENCIA",
        "CSALIDAHUMOS", "CSEGURIDAD", "CSOLEADO", "CSUBTERRANEO", "CTELEFONO", "CTERRAZA", "CTRASTERO",
        "CURBANIZADO", "CVIDRIOSDOBLES", "CVIGILANTE", "CVISTAS", "CVPO", "SSISTEMAANT", "CACESIBILIDAD",
        "CCALEFACCION", "CGARAJE", "CSISTEMAANT", "CSISTEMASEGURIDA", "CSUELO", "CSUPUEDEVISITAR", "EXCLUSIVA",
        "CEXTERIOR", "CNUEVA_CONSTRUCCION", "CPLANOS", "CLLAVES", "CSEPUEDEVISITAR", "CDISPONIBLE"};
    return l;
}

const QStringList& banderasFotos()
{
    static const QStringList l = {"FOTOS_ACT_PISOS",       "FOTOS_ACT_TUCASA",     "FOTOS_ACT_FOTOCASA",
                                  "FOTOS_ACT_MIWEB",       "FOTOS_ACT_IDEALISTA",  "FOTOS_ACT_YAENCONTRE",
                                  "FOTOS_ACT_HABITACLIA",  "FOTOS_ACT_ENALQUILER", "FOTOS_ACT_TROVIMAP"};
    return l;
}

void valoresNuevoInmueble(DataSet& ds, const CurrentAgent& agente, int propietario, const QString& codigo)
{
    auto set = [&ds](const char* columna, const QVariant& v) { ds.fieldByName(QLatin1String(columna)).setValue(v); };
    const QString n = QStringLiteral("N");
    const QString s = QStringLiteral("S");
    set("CODIGO", codigo);
    for (const QString& c : banderasNuevoInmueble())
        ds.fieldByName(c).setValue(n);
    set("ACTIVADO", s);
    set("PUBLICAR", s);
    set("DESTACADO", n);
    set("SPLAZAS", QVariant());
    set("CARTELES", s);
    set("SUBIR_PRECIO", s);
    // "5": no photo routine has looked at this property yet.
    set("TIENEFOTOS", QStringLiteral("5"));
    set("GOOGLE_MAPS_MANUAL", n);
    set("TURISTICO_ESTADO", QStringLiteral("--"));
    if (agente.codigo > 0) {
        set("CODCAPTADOR", agente.codigo);
        set("CODAGENTE", agente.codigo);
        set("CODPERITO", agente.codigo);
    }
    if (propietario > 0)
        set("CODPROPIETARIO", propietario);
    for (const QString& c : banderasFotos())
        ds.fieldByName(c).setValue(n);
    set("FECHAALTA", QDate::currentDate().startOfDay());
}

std::optional<Fallo> validarInmueble(DataSet& ds, Database& db, Transaction& tr)
{
    struct Regla {
        const char* columna;
        const char* mensaje;
    };
    static const Regla reglas[] = {
        {"CODIGO", "Debe indicar el número de expediente"},
        {"CODTIPOINMUEBLE", "Debe indicar el tipo de inmueble"},
        {"MUNICIPIO", "Debe indicar la población"},
        {"CODTIPOOPERACION", "Debe indicar el tipo de operación"},
        {"EUROIMPORTE", "Debe indicar el precio del inmueble"},
        {"CODPROPIETARIO", "Debe indicar el propietario"},
    };
    for (const Regla& r : reglas)
        if (vacio(ds.fieldByName(QLatin1String(r.columna)).value()))
            return Fallo{QString::fromUtf8(r.mensaje), QLatin1String(r.columna)};
    if (ds.state() == DataSet::State::Insert) {
        Query q(db, tr, QLatin1String(kSqlExpedienteRepetido));
        q.paramByName(kCodigo).setAsString(ds.fieldByName(kCodigo).asString().trimmed());
        q.open();
        const qlonglong n = q.eof() ? 0 : q.field(0).asInt64();
        q.close();
        if (n > 0)
            return Fallo{QStringLiteral("El número de expediente ya existe"), kCodigo};
    }
    return std::nullopt;
}

QString patronBusqueda(const QString& tecleado)
{
    return sql::quote(QLatin1Char('%') + tecleado.trimmed() + QLatin1Char('%'));
}

QString condicionBusqueda(const FiltroInmuebles& f)
{
    QString c;
    auto une = [&c](const QString& upper, const QString& lower) { return c.isEmpty() ? upper : lower; };
    if (f.propietario.isValid() && !f.propietario.isNull() && f.propietario.toLongLong() > 0)
        c += QStringLiteral(" WHERE CODPROPIETARIO = ") + sql::number(f.propietario.toLongLong());
    if (!f.calle.trimmed().isEmpty())
        c += une(QStringLiteral(" WHERE "), QStringLiteral(" AND ")) + QStringLiteral("NOMBREVIA LIKE ") +
             patronBusqueda(f.calle);
    if (!f.apartamento.trimmed().isEmpty())
        c += une(QStringLiteral(" WHERE "), QStringLiteral(" AND ")) + QStringLiteral("NOMBRE_APARTAMENTO LIKE ") +
             patronBusqueda(f.apartamento);
    if (f.desde.isValid() && f.hasta.isValid())
        // Properties with no date of entry always pass.
        c += une(QStringLiteral(" WHERE "), QStringLiteral(" AND ")) + QStringLiteral("((FECHAALTA >= ") +
             sql::date(f.desde) + QStringLiteral(" AND FECHAALTA <= ") + sql::date(f.hasta) +
             QStringLiteral(") OR (FECHAALTA IS NULL)) ");
    if (!f.expediente.trimmed().isEmpty())
        c += une(QStringLiteral(" WHERE CODIGO = "), QStringLiteral(" AND CODIGO = ")) +
             sql::quote(rellenarExpediente(f.expediente));
    c += une(QStringLiteral(" where activado ='S' "), QStringLiteral(" and activado ='S' "));
    if (f.soloExclusivas)
        c += QStringLiteral(" and exclusiva ='S' ");
    return c;
}

QString copiarInmueble(Tdm& data, const QString& codigo, int agente)
{
    const QString nuevo =
        rellenarExpediente(Query::scalar(data.datos, data.Transacion, QStringLiteral("SELECT CODIGO FROM CODINMUEBLE"))
                               .toString());
    // The column list is read from the table, so a column added later is
    // copied too.
    Query cols(data.datos, data.Transacion,
               QStringLiteral("SELECT TRIM(RDB$FIELD_NAME) FROM RDB$RELATION_FIELDS "
                              "WHERE RDB$RELATION_NAME = 'INMUEBLES' ORDER BY RDB$FIELD_POSITION"));
    QStringList otras;
    for (cols.open(); !cols.eof(); cols.next()) {
        const QString c = cols.field(0).asString().trimmed();
        if (c != kCodigo)
            otras.append(c);
    }
    cols.close();
    // The copy is the agent's who made it, as any new property is.
    QStringList valores = otras;
    if (agente > 0)
        valores.replaceInStrings(QRegularExpression(QStringLiteral("^CODAGENTE$")), QStringLiteral(":AGENTE"));
    // One statement: it lands whole or fails whole.
    Query q(data.datos, data.Transacion,
            QStringLiteral("INSERT INTO INMUEBLES (CODIGO, %1) SELECT :NUEVO, %2 FROM INMUEBLES WHERE CODIGO = :CODIGO")
                .arg(otras.join(QStringLiteral(", ")), valores.join(QStringLiteral(", "))));
    q.paramByName(QStringLiteral("NUEVO")).setAsString(nuevo);
    q.paramByName(kCodigo).setAsString(codigo);
    if (agente > 0)
        q.paramByName(QStringLiteral("AGENTE")).setAsInteger(agente);
    q.exec();
    data.Transacion.commitRetaining();
    return nuevo;
}

void borrarFotos(Tdm& data, const QString& codigo)
{
    // The images database names properties by number: a code that is none has no photographs there.
    if (numeroExpediente(codigo) < 0)
        return;
    Query q(data.Imagenes, data.Transacion, QLatin1String(kSqlBorrarFotos));
    q.paramByName(QStringLiteral("CODINMUEBLE")).setAsInteger(numeroExpediente(codigo));
    q.exec();
}

void marcarWeb(Tdm& data, const QString& codigo, bool publicar)
{
    Query q(data.datos, data.Transacion,
            QStringLiteral("UPDATE INMUEBLES SET SUBIR_INTERNET = :SUBIR WHERE CODIGO = :CODIGO"));
    q.paramByName(QStringLiteral("SUBIR")).setAsString(sql::flag(publicar));
    q.paramByName(kCodigo).setAsString(codigo);
    q.exec();
    data.Transacion.commitRetaining();
}

QString carpetaDocumentos(const QString& carpetaDatos, const QString& codigo)
{
    return QDir(carpetaDatos).filePath(QStringLiteral("ARCHIVOS/INMUEBLES/") + codigo.trimmed());
}

QString TelefonosPropietario::primero() const
{
    for (const QString& t : {tel, movil, trabajo})
        if (!t.trimmed().isEmpty())
            return t.trimmed();
    return {};
}

TelefonosPropietario telefonosPropietario(Database& db, Transaction& tr, const QVariant& codigo)
{
    TelefonosPropietario t;
    if (vacio(codigo))
        return t;
    Query q(db, tr, QStringLiteral("SELECT TEL, TEL_MOVIL, TEL_TRABAJO FROM PROPIETARIOS WHERE CODIGO =:CODIGO"));
    q.paramByName(kCodigo).setAsInteger(codigo.toLongLong());
    q.open();
    if (!q.eof()) {
        t.tel = q.field(0).asString().trimmed();
        t.movil = q.field(1).asString().trimmed();
        t.trabajo = q.field(2).asString().trimmed();
    }
    q.close();
    return t;
}

QString nombrePropietario(Database& db, Transaction& tr, const QVariant& codigo)
{
    if (vacio(codigo))
        return {};
    Query q(db, tr, QStringLiteral("SELECT APEYNOM FROM PROPIETARIOS WHERE CODIGO =:CODIGO"));
    q.paramByName(kCodigo).setAsInteger(codigo.toLongLong());
    q.open();
    const QString n = q.eof() ? QString() : q.field(0).asString().trimmed();
    q.close();
    return n;
}

} // namespace tv::registro
