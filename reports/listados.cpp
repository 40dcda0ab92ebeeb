#include "reportdata.h"

#include "datoshelpers.h"
#include "descripciones.h"
#include "dm.h"
#include "report.h"
#include "reportformat.h"
#include "sqltext.h"

namespace tv::reports {

namespace {

QVariant col(const Query& q, const char* name)
{
    const int i = q.fieldIndex(QLatin1String(name));
    return i < 0 ? QVariant() : q.field(i).value();
}

QString resumenTexto(const QString& text, int max)
{
    QString t = textoPlano(text).simplified();
    if (t.size() <= max)
        return t;
    t = t.left(max);
    const int cut = t.lastIndexOf(QLatin1Char(' '));
    return (cut > max / 2 ? t.left(cut) : t) + QStringLiteral("…");
}

QString primeraFoto(Tdm& data, const QString& codigo)
{
    bool numeric = false;
    const int key = codigo.toInt(&numeric);
    if (!numeric || !data.Imagenes.isOpen())
        return {};
    Query q(data.Imagenes, data.Transacion,
            QStringLiteral("SELECT FIRST 1 PICTURE FROM IMAGENES WHERE CODINMUEBLE = :CODINMUEBLE ORDER BY ID"));
    q.paramByName(QStringLiteral("CODINMUEBLE")).setAsInteger(key);
    q.open();
    const QString uri = q.eof() ? QString() : imagenDataUri(q.field(0).asBytes(), 200, 150);
    q.close();
    return uri;
}

QVariantMap cabeceraInmueble(Tdm& data, Descripciones& desc, const QString& codigo)
{
    Query q;
    abrirInmueble(q, data, codigo);
    QVariantMap i;
    i.insert(QStringLiteral("codigo"), codigo);
    i.insert(QStringLiteral("tipo"), desc.tipoInmueble(col(q, "CODTIPOINMUEBLE")));
    i.insert(QStringLiteral("operacion"), desc.tipoOperacion(col(q, "CODTIPOOPERACION")));
    i.insert(QStringLiteral("zona"), desc.zona(col(q, "CODTIPOZONA")));
    i.insert(QStringLiteral("municipio"), texto(col(q, "MUNICIPIO")));
    i.insert(QStringLiteral("direccion"), unir({direccionInmueble(q), texto(col(q, "MUNICIPIO"))}));
    i.insert(QStringLiteral("precio"), euros(col(q, "EUROIMPORTE")));
    i.insert(QStringLiteral("propietario"), desc.propietario(col(q, "CODPROPIETARIO")));
    q.close();
    return i;
}

} // namespace

QVariantMap datosOfertas(Tdm& data, const QString& consulta)
{
    const QString sql = consulta.trimmed().isEmpty()
                            ? QStringLiteral("select * from inmuebles where activado ='S' order by codigo")
                            : consulta;
    Descripciones desc(data);
    Query q(data.datos, data.Transacion, sql);
    QVariantList rows;
    for (q.open(); !q.eof(); q.next()) {
        const QString codigo = q.fieldByName(QStringLiteral("CODIGO")).asString().trimmed();
        QVariantMap m;
        m.insert(QStringLiteral("codigo"), codigo);
        m.insert(QStringLiteral("tipo"), desc.tipoInmueble(col(q, "CODTIPOINMUEBLE")));
        m.insert(QStringLiteral("operacion"), desc.tipoOperacion(col(q, "CODTIPOOPERACION")));
        m.insert(QStringLiteral("zona"), desc.zona(col(q, "CODTIPOZONA")));
        m.insert(QStringLiteral("municipio"), texto(col(q, "MUNICIPIO")));
        m.insert(QStringLiteral("ubicacion"), unir({desc.zona(col(q, "CODTIPOZONA")), texto(col(q, "MUNICIPIO"))},
                                                   QStringLiteral(", ")));
        m.insert(QStringLiteral("superficie"), metros(col(q, "CSUPER1")));
        qlonglong dormitorios = 0;
        for (const char* c : {"CHABDOBLES", "CHABSENCILLAS", "CNUMSUITE"})
            dormitorios += col(q, c).toLongLong();
        m.insert(QStringLiteral("dormitorios"), dormitorios > 0 ? QString::number(dormitorios) : QString());
        m.insert(QStringLiteral("banos"), numero(col(q, "CNUMBANOS"), 0));
        m.insert(QStringLiteral("precio"), euros(col(q, "EUROIMPORTE")));
        m.insert(QStringLiteral("exclusiva"), texto(col(q, "EXCLUSIVA")) == QLatin1String("S"));
        m.insert(QStringLiteral("descripcion"), resumenTexto(texto(col(q, "CARTELES_INFORMACION")), 220));
        m.insert(QStringLiteral("foto"), primeraFoto(data, codigo));
        rows.append(m);
    }
    q.close();
    marcarFilas(rows);
    QVariantMap out;
    out.insert(QStringLiteral("inmuebles"), rows);
    out.insert(QStringLiteral("numero"), int(rows.size()));
    out.insert(QStringLiteral("empresa"), agencyData(data));
    return out;
}

QVariantMap datosOfertas(Tdm& data, const QStringList& codigos)
{
    QStringList quoted;
    for (const QString& c : codigos)
        if (!c.trimmed().isEmpty())
            quoted.append(sql::quote(normalizarCodigo(c)));
    if (quoted.isEmpty()) {
        QVariantMap out;
        out.insert(QStringLiteral("inmuebles"), QVariantList());
        out.insert(QStringLiteral("numero"), 0);
        out.insert(QStringLiteral("empresa"), agencyData(data));
        return out;
    }
    return datosOfertas(data, QStringLiteral("select * from inmuebles where codigo in (%1) order by codigo")
                                  .arg(quoted.join(QLatin1Char(','))));
}

QVariantMap datosGestiones(Tdm& data, const QDate& desde, const QDate& hasta)
{
    Descripciones desc(data);
    // The listing's own filter, so the paper shows what the grid shows.
    Query q(data.datos, data.Transacion,
            QStringLiteral("select * from gestiones\nwhere fecha >=:fechainicio\nand fecha <=:fechafin\n"
                           "order by codtipogestion,codigo desc"));
    q.paramByName(QStringLiteral("FECHAINICIO")).setAsDate(desde);
    q.paramByName(QStringLiteral("FECHAFIN")).setAsDate(hasta);
    QVariantList grupos;
    QVariantList actual;
    QString tipoActual;
    bool primero = true;
    int total = 0;
    auto cerrar = [&]() {
        if (primero)
            return;
        marcarFilas(actual);
        grupos.append(QVariantMap{{QStringLiteral("tipo"), tipoActual.isEmpty() ? QStringLiteral("Sin tipo") : tipoActual},
                                  {QStringLiteral("numero"), int(actual.size())},
                                  {QStringLiteral("gestiones"), actual}});
        actual.clear();
    };
    for (q.open(); !q.eof(); q.next()) {
        const QString tipo = desc.tipoGestion(col(q, "CODTIPOGESTION"));
        if (primero || tipo != tipoActual) {
            cerrar();
            tipoActual = tipo;
            primero = false;
        }
        QVariantMap g;
        g.insert(QStringLiteral("codigo"), q.fieldByName(QStringLiteral("CODIGO")).asString());
        g.insert(QStringLiteral("fecha"), fecha(col(q, "FECHA")));
        g.insert(QStringLiteral("hora"), texto(col(q, "HORA")));
        g.insert(QStringLiteral("tipo"), tipo);
        g.insert(QStringLiteral("asunto"), texto(col(q, "ASUNTO")));
        g.insert(QStringLiteral("inmueble"), texto(col(q, "CODINMUEBLE")));
        g.insert(QStringLiteral("cliente"), desc.cliente(col(q, "CODCLIENTE")));
        g.insert(QStringLiteral("agente"), desc.agente(col(q, "CODAGENTE")));
        g.insert(QStringLiteral("resultado"), textoPlano(texto(col(q, "RESULTADO"))));
        g.insert(QStringLiteral("pendiente"), texto(col(q, "PENDIENTE")) == QLatin1String("S"));
        actual.append(g);
        ++total;
    }
    cerrar();
    q.close();
    QVariantMap out;
    out.insert(QStringLiteral("grupos"), grupos);
    out.insert(QStringLiteral("numero"), total);
    out.insert(QStringLiteral("desde"), desde.toString(QStringLiteral("dd/MM/yyyy")));
    out.insert(QStringLiteral("hasta"), hasta.toString(QStringLiteral("dd/MM/yyyy")));
    out.insert(QStringLiteral("empresa"), agencyData(data));
    return out;
}

QVariantMap datosInteresados(Tdm& data, const QString& codigoInmueble, const QStringList& clientes)
{
    const QString codigo = normalizarCodigo(codigoInmueble);
    Descripciones desc(data);
    QVariantMap out;
    out.insert(QStringLiteral("inmueble"), cabeceraInmueble(data, desc, codigo));

    QStringList lista;
    for (const QString& c : clientes) {
        bool ok = false;
        const qlonglong n = c.trimmed().toLongLong(&ok);
        if (ok)
            lista.append(sql::number(n));
    }
    QVariantList rows;
    if (!lista.isEmpty()) {
        Query q(data.datos, data.Transacion,
                QStringLiteral(" select codigo, fechaalta, apeynom,tel,tel_movil, fax, mail from CLIENTES where codigo in (") +
                    lista.join(QLatin1Char(',')) + QStringLiteral(") order by apeynom "));
        Query d(data.datos, data.Transacion,
                QStringLiteral("SELECT COUNT(*) FROM DESCARTES WHERE CODINMUEBLE = :CODINMUEBLE AND CODCLIENTE = :CODCLIENTE"));
        for (q.open(); !q.eof(); q.next()) {
            QVariantMap c;
            c.insert(QStringLiteral("codigo"), q.fieldByName(QStringLiteral("CODIGO")).asString());
            c.insert(QStringLiteral("fecha_alta"), fecha(col(q, "FECHAALTA")));
            c.insert(QStringLiteral("nombre"), texto(col(q, "APEYNOM")));
            c.insert(QStringLiteral("telefono"), texto(col(q, "TEL")));
            c.insert(QStringLiteral("movil"), texto(col(q, "TEL_MOVIL")));
            c.insert(QStringLiteral("fax"), texto(col(q, "FAX")));
            c.insert(QStringLiteral("email"), texto(col(q, "MAIL")));
            d.paramByName(QStringLiteral("CODINMUEBLE")).setAsString(codigo);
            d.paramByName(QStringLiteral("CODCLIENTE")).setValue(col(q, "CODIGO"));
            d.open();
            const bool descartado = !d.eof() && d.field(0).asInteger() > 0;
            d.close();
            c.insert(QStringLiteral("descartado"), descartado);
            c.insert(QStringLiteral("descartado_texto"), descartado ? QStringLiteral("Sí") : QStringLiteral("No"));
            rows.append(c);
        }
        q.close();
    }
    marcarFilas(rows);
    out.insert(QStringLiteral("clientes"), rows);
    out.insert(QStringLiteral("numero"), int(rows.size()));
    out.insert(QStringLiteral("empresa"), agencyData(data));
    return out;
}

QString consultaAgendax(const QDate& desde, const QDate& hasta, bool soloPropia)
{
    const QString hastaFin = sql::quote(hasta.toString(QStringLiteral("dd.MM.yyyy")) + QStringLiteral(" 23:59"));
    return QStringLiteral(" select a.Inicio, a.finish as Fin, a.caption as Motivo, a.location as Tipo_Visita from "
                          "agendax a  where ") +
           (soloPropia ? QStringLiteral("codusuario =:codusuario and ") : QString()) +
           QStringLiteral("a.inicio >= ") + sql::date(desde) + QStringLiteral(" and a.finish <=") + hastaFin +
           QStringLiteral(" order by a.inicio ");
}

QVariantMap datosAgendax(Tdm& data, const QDate& desde, const QDate& hasta, const CurrentAgent& agente)
{
    const bool soloPropia = agente.verSoloSuAgenda;
    Query q(data.datos, data.Transacion, consultaAgendax(desde, hasta, soloPropia));
    if (soloPropia)
        q.paramByName(QStringLiteral("CODUSUARIO")).setAsString(agente.usuario.trimmed());
    QVariantList rows;
    for (q.open(); !q.eof(); q.next()) {
        QVariantMap t;
        t.insert(QStringLiteral("inicio"), fechaHora(col(q, "INICIO")));
        t.insert(QStringLiteral("fin"), fechaHora(col(q, "FIN")));
        t.insert(QStringLiteral("tipo_cita"), texto(col(q, "TIPO_VISITA")));
        t.insert(QStringLiteral("asunto"), texto(col(q, "MOTIVO")));
        rows.append(t);
    }
    q.close();
    marcarFilas(rows);
    QVariantMap out;
    out.insert(QStringLiteral("tareas"), rows);
    out.insert(QStringLiteral("numero"), int(rows.size()));
    out.insert(QStringLiteral("desde"), desde.toString(QStringLiteral("dd/MM/yyyy")));
    out.insert(QStringLiteral("hasta"), hasta.toString(QStringLiteral("dd/MM/yyyy")));
    out.insert(QStringLiteral("usuario"), soloPropia ? agente.usuario.trimmed() : QString());
    out.insert(QStringLiteral("empresa"), agencyData(data));
    return out;
}

QString tituloGastos(Tdm& data, const QString& codigoInmueble)
{
    const QString codigo = normalizarCodigo(codigoInmueble);
    Query q(data.datos, data.Transacion,
            QStringLiteral("SELECT CODIGO, MUNICIPIO, CODTIPOINMUEBLE, CODTIPOZONA FROM INMUEBLES WHERE CODIGO = :CODIGO"));
    q.paramByName(QStringLiteral("CODIGO")).setAsString(codigo);
    q.open();
    if (q.eof())
        throw ReportError(QStringLiteral("No existe el inmueble %1.").arg(codigo));
    const QString cod = q.field(0).asString().trimmed();
    const QString municipio = q.field(1).asString().trimmed();
    const QVariant tipoCod = q.field(2).value();
    const int zonaCod = q.field(3).isNull() ? 0 : q.field(3).asInteger();
    q.close();

    Query t(data.datos, data.Transacion, QStringLiteral(" select DESCRIPCION from tipoinmueble WHERE CODIGO =:CODTIPOINMUEBLE "));
    t.paramByName(QStringLiteral("CODTIPOINMUEBLE")).setValue(tipoCod);
    t.open();
    const QString tipo = t.eof() ? QString() : t.field(0).asString().trimmed();
    t.close();
    QString zona;
    if (zonaCod >= 1) {
        Query z(data.datos, data.Transacion, QStringLiteral(" SELECT DESCRIPCION FROM ZONAS WHERE CODIGO =:CODIGO "));
        z.paramByName(QStringLiteral("CODIGO")).setAsInteger(zonaCod);
        z.open();
        zona = z.eof() ? QString() : z.field(0).asString().trimmed();
        z.close();
    }
    return (cod + QLatin1Char('-') + municipio + QLatin1Char('-') + tipo + QLatin1Char('(') + zona + QLatin1Char(')'))
        .toLower();
}

QVariantMap datosInmuebleGastos(Tdm& data, const QString& codigoInmueble)
{
    const QString codigo = normalizarCodigo(codigoInmueble);
    Descripciones desc(data);
    QVariantMap out;
    out.insert(QStringLiteral("titulo"), tituloGastos(data, codigo));
    out.insert(QStringLiteral("inmueble"), cabeceraInmueble(data, desc, codigo));

    Query q(data.datos, data.Transacion, QStringLiteral("select * from INMUEBLES_GASTOS where codinmueble =:codigo"));
    q.paramByName(QStringLiteral("CODIGO")).setAsString(codigo);
    QVariantList rows;
    Money total;
    for (q.open(); !q.eof(); q.next()) {
        QVariantMap g;
        g.insert(QStringLiteral("codigo"), q.fieldByName(QStringLiteral("CODIGO")).asString().trimmed());
        g.insert(QStringLiteral("fecha"), fecha(col(q, "FECHA")));
        g.insert(QStringLiteral("tipo"), texto(col(q, "TIPOGASTO")));
        g.insert(QStringLiteral("descripcion"), textoPlano(texto(col(q, "DESCRIPCION"))));
        g.insert(QStringLiteral("importe"), euros(col(q, "IMPORTE")));
        g.insert(QStringLiteral("negativo"), col(q, "IMPORTE").toDouble() < 0);
        total += Money::fromDouble(col(q, "IMPORTE").toDouble()).roundHalfAwayFromZero(2);
        rows.append(g);
    }
    q.close();
    marcarFilas(rows);
    out.insert(QStringLiteral("gastos"), rows);
    out.insert(QStringLiteral("numero"), int(rows.size()));
    out.insert(QStringLiteral("total"), total.toSpanish(2, true));
    out.insert(QStringLiteral("empresa"), agencyData(data));
    return out;
}

} // namespace tv::reports
