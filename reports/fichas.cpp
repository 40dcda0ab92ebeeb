#include "reportdata.h"

#include "datoshelpers.h"
#include "descripciones.h"
#include "dm.h"
#include "report.h"
#include "reportformat.h"

namespace tv::reports {

namespace {

QVariant col(const Query& q, const char* name)
{
    const int i = q.fieldIndex(QLatin1String(name));
    return i < 0 ? QVariant() : q.field(i).value();
}

QString sexo(const QVariant& v)
{
    const QString s = texto(v).toUpper();
    if (s == QLatin1String("H") || s == QLatin1String("V"))
        return QStringLiteral("Hombre");
    if (s == QLatin1String("M") || s == QLatin1String("F"))
        return QStringLiteral("Mujer");
    return texto(v);
}

// A client or owner row: the two tables share their columns except the
// date of entry (FECHAALTA / FECHA_ALTA).
QVariantMap persona(const Query& q, Descripciones& desc)
{
    QVariantMap p;
    p.insert(QStringLiteral("codigo"), q.fieldByName(QStringLiteral("CODIGO")).asString());
    p.insert(QStringLiteral("trato"), texto(col(q, "TRATO")));
    p.insert(QStringLiteral("nombre"), texto(col(q, "APEYNOM")));
    p.insert(QStringLiteral("nombre_completo"), unir({texto(col(q, "TRATO")), texto(col(q, "APEYNOM"))}));
    p.insert(QStringLiteral("nif"), texto(col(q, "NIF")));
    const QVariant alta = q.fieldIndex(QStringLiteral("FECHAALTA")) >= 0 ? col(q, "FECHAALTA") : col(q, "FECHA_ALTA");
    p.insert(QStringLiteral("fecha_alta"), fecha(alta));
    p.insert(QStringLiteral("situacion"), texto(col(q, "SITUACION")));
    p.insert(QStringLiteral("agente"), desc.agente(col(q, "CODAGENTE")));
    p.insert(QStringLiteral("direccion"), direccionPersona(q));
    p.insert(QStringLiteral("cp"), texto(col(q, "CP")));
    p.insert(QStringLiteral("poblacion"), texto(col(q, "POB")));
    p.insert(QStringLiteral("provincia"), texto(col(q, "PROVINCIA")));
    p.insert(QStringLiteral("pais"), texto(col(q, "PAIS")));
    QString localidad = unir({texto(col(q, "CP")), texto(col(q, "POB"))});
    const QString provincia = texto(col(q, "PROVINCIA"));
    if (!provincia.isEmpty())
        localidad = unir({localidad, QStringLiteral("(%1)").arg(provincia)});
    p.insert(QStringLiteral("localidad"), localidad);
    p.insert(QStringLiteral("telefono"), texto(col(q, "TEL")));
    p.insert(QStringLiteral("telefono_trabajo"), texto(col(q, "TEL_TRABAJO")));
    p.insert(QStringLiteral("movil"), texto(col(q, "TEL_MOVIL")));
    p.insert(QStringLiteral("fax"), texto(col(q, "FAX")));
    p.insert(QStringLiteral("email"), texto(col(q, "MAIL")));
    p.insert(QStringLiteral("titular"), texto(col(q, "TITULAR")));
    p.insert(QStringLiteral("cuenta"),
             unir({texto(col(q, "BANCO")), texto(col(q, "SUCURSAL")), texto(col(q, "DC")), texto(col(q, "CUENTA"))}));
    p.insert(QStringLiteral("sexo"), sexo(col(q, "SEXO")));
    p.insert(QStringLiteral("fecha_nacimiento"), fecha(col(q, "FECHA_NACIMIENTO")));
    p.insert(QStringLiteral("estado_civil"), texto(col(q, "ESTADO_CIVIL")));
    p.insert(QStringLiteral("nivel_estudios"), texto(col(q, "NIVEL_ESTUDIOS")));
    p.insert(QStringLiteral("situacion_laboral"), texto(col(q, "SITUACION_LABORAL")));
    p.insert(QStringLiteral("perfil1"), desc.perfil(col(q, "CODPERFIL1")));
    p.insert(QStringLiteral("perfil2"), desc.perfil(col(q, "CODPERFIL2")));
    p.insert(QStringLiteral("perfiles"), unir({desc.perfil(col(q, "CODPERFIL1")), desc.perfil(col(q, "CODPERFIL2"))},
                                              QStringLiteral(", ")));
    p.insert(QStringLiteral("procedencia"), desc.origen(col(q, "CODPROCEDENCIA")));
    p.insert(QStringLiteral("observaciones"), textoPlano(texto(col(q, "OBSERVACIONES"))));
    const bool perfil = !unir({p.value(QStringLiteral("sexo")).toString(),
                               p.value(QStringLiteral("fecha_nacimiento")).toString(),
                               p.value(QStringLiteral("estado_civil")).toString(),
                               p.value(QStringLiteral("nivel_estudios")).toString(),
                               p.value(QStringLiteral("situacion_laboral")).toString(),
                               p.value(QStringLiteral("perfiles")).toString(),
                               p.value(QStringLiteral("procedencia")).toString()})
                             .isEmpty();
    p.insert(QStringLiteral("hay_perfil"), perfil);
    p.insert(QStringLiteral("hay_banco"), !unir({p.value(QStringLiteral("titular")).toString(),
                                                 p.value(QStringLiteral("cuenta")).toString()})
                                               .isEmpty());
    p.insert(QStringLiteral("campos"), camposFila(q));
    return p;
}

// The follow-ups of one client or one property (`columna` names which),
// newest first; with `soloAgente` only that agent's.
QVariantList gestionesDe(Tdm& data, Descripciones& desc, const QString& columna, const QVariant& valor,
                         int soloAgente = 0)
{
    QString sql = QStringLiteral("SELECT * FROM GESTIONES WHERE %1 = :VALOR").arg(columna);
    if (soloAgente > 0)
        sql += QStringLiteral(" AND CODAGENTE = :CODAGENTE");
    sql += QStringLiteral(" ORDER BY FECHA DESC, HORA DESC, CODIGO DESC");
    Query q(data.datos, data.Transacion, sql);
    q.paramByName(QStringLiteral("VALOR")).setValue(valor);
    if (soloAgente > 0)
        q.paramByName(QStringLiteral("CODAGENTE")).setAsInteger(soloAgente);
    QVariantList rows;
    for (q.open(); !q.eof(); q.next()) {
        QVariantMap g;
        g.insert(QStringLiteral("codigo"), q.fieldByName(QStringLiteral("CODIGO")).asString());
        g.insert(QStringLiteral("fecha"), fecha(col(q, "FECHA")));
        g.insert(QStringLiteral("hora"), texto(col(q, "HORA")));
        g.insert(QStringLiteral("tipo"), desc.tipoGestion(col(q, "CODTIPOGESTION")));
        g.insert(QStringLiteral("asunto"), texto(col(q, "ASUNTO")));
        g.insert(QStringLiteral("resultado"), textoPlano(texto(col(q, "RESULTADO"))));
        g.insert(QStringLiteral("agente"), desc.agente(col(q, "CODAGENTE")));
        g.insert(QStringLiteral("cliente"), desc.cliente(col(q, "CODCLIENTE")));
        g.insert(QStringLiteral("inmueble"), texto(col(q, "CODINMUEBLE")));
        g.insert(QStringLiteral("pendiente"), texto(col(q, "PENDIENTE")) == QLatin1String("S"));
        rows.append(g);
    }
    q.close();
    marcarFilas(rows);
    return rows;
}

QString rango(const QVariant& desde, const QVariant& hasta, const QString& unidad = {})
{
    const QString d = unidad.isEmpty() ? (numero(desde, 2).isEmpty() ? QString() : euros(desde)) : numero(desde, 2);
    const QString h = unidad.isEmpty() ? (numero(hasta, 2).isEmpty() ? QString() : euros(hasta)) : numero(hasta, 2);
    const QString u = unidad.isEmpty() ? QString() : QLatin1Char(' ') + unidad;
    if (!d.isEmpty() && !h.isEmpty())
        return QStringLiteral("de %1 a %2%3").arg(d, h, u);
    if (!d.isEmpty())
        return QStringLiteral("desde %1%2").arg(d, u);
    if (!h.isEmpty())
        return QStringLiteral("hasta %1%2").arg(h, u);
    return {};
}

QVariantList demandasDe(Tdm& data, Descripciones& desc, int cliente)
{
    Query q(data.datos, data.Transacion,
            QStringLiteral("SELECT * FROM DEMANDAS WHERE CODCLIENTE = :CODCLIENTE ORDER BY FECHAALTA DESC, CODIGO DESC"));
    q.paramByName(QStringLiteral("CODCLIENTE")).setAsInteger(cliente);
    QVariantList rows;
    for (q.open(); !q.eof(); q.next()) {
        QVariantMap d;
        d.insert(QStringLiteral("codigo"), q.fieldByName(QStringLiteral("CODIGO")).asString());
        d.insert(QStringLiteral("fecha_alta"), fecha(col(q, "FECHAALTA")));
        d.insert(QStringLiteral("operacion"), desc.tipoOperacion(col(q, "CODOPERACION")));
        d.insert(QStringLiteral("tipos"), unir({desc.tipoInmueble(col(q, "CODINMUEBLE1")),
                                                desc.tipoInmueble(col(q, "CODINMUEBLE2")),
                                                desc.tipoInmueble(col(q, "CODINMUEBLE3"))},
                                               QStringLiteral(", ")));
        QStringList zonas1, zonas2;
        for (const char* z : {"CODZONA", "CODZONA2", "CODZONA3", "CODZONA4"})
            zonas1.append(desc.zona(col(q, z)));
        for (const char* z : {"CODZONAA", "CODZONAB", "CODZONAC", "CODZONAD"})
            zonas2.append(desc.zona(col(q, z)));
        QString lugar1 = texto(col(q, "POBLACION1"));
        if (!unir(zonas1).isEmpty())
            lugar1 += QStringLiteral(" (%1)").arg(unir(zonas1, QStringLiteral(", ")));
        QString lugar2 = texto(col(q, "POBLACION2"));
        if (!unir(zonas2).isEmpty())
            lugar2 += QStringLiteral(" (%1)").arg(unir(zonas2, QStringLiteral(", ")));
        d.insert(QStringLiteral("lugar"), unir({lugar1, lugar2}, QStringLiteral(" / ")));
        d.insert(QStringLiteral("precio"), rango(col(q, "PRECIODESDE"), col(q, "PRECIOHASTA")));
        d.insert(QStringLiteral("metros"), rango(col(q, "SDESDEMETROS"), col(q, "SHASTAMETROS"), QStringLiteral("m²")));
        d.insert(QStringLiteral("habitaciones"),
                 rango(col(q, "SDESDEHABITACIONES"), col(q, "SHASTAHABITACIONES"), QStringLiteral("dorm.")));
        d.insert(QStringLiteral("situacion"), texto(col(q, "SITUACION")));
        d.insert(QStringLiteral("agente"), desc.agente(col(q, "CODAGENTE")));
        rows.append(d);
    }
    q.close();
    marcarFilas(rows);
    return rows;
}

} // namespace

QVariantMap datosCliente(Tdm& data, int codigo)
{
    Query q(data.datos, data.Transacion, QStringLiteral("SELECT * FROM CLIENTES WHERE CODIGO = :CODIGO"));
    q.paramByName(QStringLiteral("CODIGO")).setAsInteger(codigo);
    q.open();
    if (q.eof())
        throw ReportError(QStringLiteral("No existe el cliente %1.").arg(codigo));
    Descripciones desc(data);
    QVariantMap out;
    out.insert(QStringLiteral("cliente"), persona(q, desc));
    q.close();
    const QVariantList demandas = demandasDe(data, desc, codigo);
    out.insert(QStringLiteral("demandas"), demandas);
    out.insert(QStringLiteral("numero_demandas"), int(demandas.size()));
    const QVariantList gestiones = gestionesDe(data, desc, QStringLiteral("CODCLIENTE"), QVariant(qlonglong(codigo)),
                                               data.agente.verSoloSusGestiones ? data.agente.codigo : 0);
    out.insert(QStringLiteral("gestiones"), gestiones);
    out.insert(QStringLiteral("numero_gestiones"), int(gestiones.size()));
    out.insert(QStringLiteral("empresa"), agencyData(data));
    return out;
}

QVariantMap datosPropietario(Tdm& data, int codigo)
{
    Query q(data.datos, data.Transacion, QStringLiteral("SELECT * FROM PROPIETARIOS WHERE CODIGO = :CODIGO"));
    q.paramByName(QStringLiteral("CODIGO")).setAsInteger(codigo);
    q.open();
    if (q.eof())
        throw ReportError(QStringLiteral("No existe el propietario %1.").arg(codigo));
    Descripciones desc(data);
    QVariantMap out;
    out.insert(QStringLiteral("propietario"), persona(q, desc));
    q.close();

    // The owner's properties as the owner screen lists them: first or second
    // owner, in any activation state.
    Query i(data.datos, data.Transacion,
            QStringLiteral("select i.codtipoinmueble, i.codtipooperacion, i.codtipozona , i.codpropietario, "
                           "i.municipio , i.euroimporte, i.codigo, t.descripcion as tipo, z.descripcion as zona, "
                           "p.descripcion as Operacion from inmuebles I\n"
                           "inner join tipoinmueble t on (t.codigo = i.codtipoinmueble )\n"
                           "inner join tipooperacion p on ( p.codigo = i.codtipooperacion)\n"
                           "left join zonas z on ( i.codtipozona = z.codigo )\n"
                           "where (( I.codpropietario =:codigo) or (I.codpropietario2 =:codigo ) )"));
    i.paramByName(QStringLiteral("CODIGO")).setAsInteger(codigo);
    QVariantList inmuebles;
    for (i.open(); !i.eof(); i.next()) {
        QVariantMap m;
        m.insert(QStringLiteral("codigo"), i.fieldByName(QStringLiteral("CODIGO")).asString());
        m.insert(QStringLiteral("tipo"), desc.tipoInmueble(col(i, "CODTIPOINMUEBLE")));
        m.insert(QStringLiteral("operacion"), Descripciones::legible(texto(col(i, "OPERACION"))));
        m.insert(QStringLiteral("zona"), texto(col(i, "ZONA")));
        m.insert(QStringLiteral("municipio"), texto(col(i, "MUNICIPIO")));
        m.insert(QStringLiteral("precio"), euros(col(i, "EUROIMPORTE")));
        inmuebles.append(m);
    }
    i.close();
    marcarFilas(inmuebles);
    out.insert(QStringLiteral("inmuebles"), inmuebles);
    out.insert(QStringLiteral("numero_inmuebles"), int(inmuebles.size()));
    out.insert(QStringLiteral("empresa"), agencyData(data));
    return out;
}

QVariantMap datosGestion(Tdm& data, int codigo)
{
    Query q(data.datos, data.Transacion, QStringLiteral("SELECT * FROM GESTIONES WHERE CODIGO = :CODIGO"));
    q.paramByName(QStringLiteral("CODIGO")).setAsInteger(codigo);
    q.open();
    if (q.eof())
        throw ReportError(QStringLiteral("No existe la gestión %1.").arg(codigo));
    Descripciones desc(data);
    QVariantMap g;
    g.insert(QStringLiteral("codigo"), QString::number(codigo));
    g.insert(QStringLiteral("tipo"), desc.tipoGestion(col(q, "CODTIPOGESTION")));
    g.insert(QStringLiteral("asunto"), texto(col(q, "ASUNTO")));
    g.insert(QStringLiteral("fecha"), fecha(col(q, "FECHA")));
    g.insert(QStringLiteral("hora"), texto(col(q, "HORA")));
    g.insert(QStringLiteral("agente"), desc.agente(col(q, "CODAGENTE")));
    g.insert(QStringLiteral("registrado_por"), desc.agente(col(q, "CODAGENTE_REGISTRADOR")));
    g.insert(QStringLiteral("origen"), desc.origen(col(q, "CODORIGEN")));
    g.insert(QStringLiteral("pendiente"), siNo(col(q, "PENDIENTE")));
    g.insert(QStringLiteral("confirmada"), siNo(col(q, "CONFIRMADA")));
    g.insert(QStringLiteral("agenda"), siNo(col(q, "AGENDA")));
    g.insert(QStringLiteral("resultado"), textoPlano(texto(col(q, "RESULTADO"))));
    g.insert(QStringLiteral("descripcion"), textoPlano(texto(col(q, "TEXTO_AGENDA"))));
    g.insert(QStringLiteral("campos"), camposFila(q));
    const QString codInmueble = texto(col(q, "CODINMUEBLE"));
    const QVariant codCliente = col(q, "CODCLIENTE");
    q.close();

    QVariantMap out;
    if (!codInmueble.isEmpty()) {
        Query i(data.datos, data.Transacion,
                QStringLiteral(" SELECT TIPOVIA,NOMBREVIA,NUMERO,BLOQUE,ESCALERA,PLANTA,PUERTA,municipio,euroimporte FROM "
                               "INMUEBLES  WHERE CODIGO = :CODINMUEBLE "));
        i.paramByName(QStringLiteral("CODINMUEBLE")).setAsString(codInmueble);
        i.open();
        if (!i.eof()) {
            QVariantMap m;
            m.insert(QStringLiteral("codigo"), codInmueble);
            m.insert(QStringLiteral("direccion"), unir({direccionInmueble(i), texto(col(i, "MUNICIPIO"))}));
            m.insert(QStringLiteral("precio"), euros(col(i, "EUROIMPORTE")));
            Query p(data.datos, data.Transacion,
                    QStringLiteral(" SELECT P.APEYNOM FROM PROPIETARIOS P,INMUEBLES I  WHERE P.CODIGO = "
                                   "I.CODPROPIETARIO AND I.CODIGO =:CODINMUEBLE "));
            p.paramByName(QStringLiteral("CODINMUEBLE")).setAsString(codInmueble);
            p.open();
            m.insert(QStringLiteral("propietario"), p.eof() ? QString() : p.field(0).asString().trimmed());
            p.close();
            out.insert(QStringLiteral("inmueble"), m);
        }
        i.close();
    }
    if (codCliente.toInt() > 0) {
        Query c(data.datos, data.Transacion, QStringLiteral("SELECT * FROM CLIENTES WHERE CODIGO = :CODIGO"));
        c.paramByName(QStringLiteral("CODIGO")).setValue(codCliente);
        c.open();
        if (!c.eof())
            out.insert(QStringLiteral("cliente"), persona(c, desc));
        c.close();
    }
    out.insert(QStringLiteral("gestion"), g);
    out.insert(QStringLiteral("empresa"), agencyData(data));
    return out;
}

QVariantMap datosInmuebleGestion(Tdm& data, const QString& codigoInmueble)
{
    const QString codigo = normalizarCodigo(codigoInmueble);
    Query q;
    abrirInmueble(q, data, codigo);
    Descripciones desc(data);
    QVariantMap i;
    i.insert(QStringLiteral("codigo"), codigo);
    i.insert(QStringLiteral("tipo"), desc.tipoInmueble(col(q, "CODTIPOINMUEBLE")));
    i.insert(QStringLiteral("operacion"), desc.tipoOperacion(col(q, "CODTIPOOPERACION")));
    i.insert(QStringLiteral("direccion"), unir({direccionInmueble(q), texto(col(q, "MUNICIPIO"))}));
    i.insert(QStringLiteral("zona"), desc.zona(col(q, "CODTIPOZONA")));
    i.insert(QStringLiteral("precio"), euros(col(q, "EUROIMPORTE")));
    i.insert(QStringLiteral("propietario"), desc.propietario(col(q, "CODPROPIETARIO")));
    i.insert(QStringLiteral("agente"), desc.agente(col(q, "CODAGENTE")));
    q.close();

    // An agent who sees only his own follow-ups prints only those.
    const QVariantList gestiones = gestionesDe(data, desc, QStringLiteral("CODINMUEBLE"), QVariant(codigo),
                                               data.agente.verSoloSusGestiones ? data.agente.codigo : 0);
    QVariantMap out;
    out.insert(QStringLiteral("inmueble"), i);
    out.insert(QStringLiteral("gestiones"), gestiones);
    out.insert(QStringLiteral("numero_gestiones"), int(gestiones.size()));
    out.insert(QStringLiteral("empresa"), agencyData(data));
    return out;
}

} // namespace tv::reports
