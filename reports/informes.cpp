#include "reportdata.h"

#include "datoshelpers.h"
#include "dm.h"
#include "report.h"

#include <QRegularExpression>

namespace tv::reports {

namespace {

QString requerido(const QMap<QString, QString>& p, const QString& clave, const QString& informe)
{
    const QString v = p.value(clave).trimmed();
    if (v.isEmpty())
        throw ReportError(QStringLiteral("El informe %1 necesita el parámetro %2 (--param %2=...).").arg(informe, clave));
    return v;
}

int entero(const QMap<QString, QString>& p, const QString& clave, const QString& informe)
{
    const QString v = requerido(p, clave, informe);
    bool ok = false;
    const int n = v.toInt(&ok);
    if (!ok)
        throw ReportError(QStringLiteral("El parámetro %1 debe ser un número: %2").arg(clave, v));
    return n;
}

QDate fechaParam(const QMap<QString, QString>& p, const QString& clave, const QDate& defecto)
{
    const QString v = p.value(clave).trimmed();
    if (v.isEmpty())
        return defecto;
    const QDate d = leerFecha(v);
    if (!d.isValid())
        throw ReportError(QStringLiteral("La fecha del parámetro %1 no es válida: %2 (use dd/mm/aaaa)").arg(clave, v));
    return d;
}

QStringList lista(const QString& v)
{
    QStringList out;
    for (const QString& s : v.split(QRegularExpression(QStringLiteral("[,;\\s]+")), Qt::SkipEmptyParts))
        out.append(s);
    return out;
}

} // namespace

QStringList informesDisponibles()
{
    QStringList l = {
        QStringLiteral("ficha               codigo=EXPEDIENTE (la ficha de su familia)"),
        QStringLiteral("in_ficha_piso ... in_ficha_rustica  codigo=EXPEDIENTE"),
        QStringLiteral("in_ofertas          [codigos=00001,00002]"),
        QStringLiteral("in_inmuebleGestion  codigo=EXPEDIENTE"),
        QStringLiteral("in_cliente          codigo=N"),
        QStringLiteral("in_propietario      codigo=N"),
        QStringLiteral("in_gestion          codigo=N"),
        QStringLiteral("in_gestiones        [desde=dd/mm/aaaa] [hasta=dd/mm/aaaa]"),
        QStringLiteral("in_interesados      codigo=EXPEDIENTE clientes=1,2,3"),
        QStringLiteral("in_agendax          [desde=dd/mm/aaaa] [hasta=dd/mm/aaaa] [usuario=USUARIO]"),
        QStringLiteral("in_inmueblegastos   codigo=EXPEDIENTE"),
    };
    for (const Estadistica& e : estadisticas())
        l.append(QStringLiteral("in_estadistica%1     (%2)").arg(e.numero).arg(e.titulo));
    return l;
}

QVariantMap datosPorNombre(Tdm& data, const QString& nombre, const QMap<QString, QString>& p, QString* plantilla)
{
    QString n = nombre.trimmed();
    n.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (n.startsWith(QLatin1String("informes/"), Qt::CaseInsensitive))
        n = n.mid(9);
    if (n.endsWith(QLatin1String(".html"), Qt::CaseInsensitive))
        n.chop(5);
    const QString key = n.toLower();
    QString tmpl = n;
    QVariantMap out;
    bool conocido = true;

    if (key == QLatin1String("ficha") || key.startsWith(QLatin1String("in_ficha_"))) {
        const QString codigo = requerido(p, QStringLiteral("codigo"), n);
        out = datosFichaInmueble(data, codigo);
        if (key == QLatin1String("ficha"))
            tmpl = plantillaFicha(data, codigo);
    } else if (key == QLatin1String("in_ofertas")) {
        out = p.contains(QStringLiteral("codigos")) ? datosOfertas(data, lista(p.value(QStringLiteral("codigos"))))
                                                    : datosOfertas(data, QString());
    } else if (key == QLatin1String("in_inmueblegestion")) {
        out = datosInmuebleGestion(data, requerido(p, QStringLiteral("codigo"), n));
    } else if (key == QLatin1String("in_cliente")) {
        out = datosCliente(data, entero(p, QStringLiteral("codigo"), n));
    } else if (key == QLatin1String("in_propietario")) {
        out = datosPropietario(data, entero(p, QStringLiteral("codigo"), n));
    } else if (key == QLatin1String("in_gestion")) {
        out = datosGestion(data, entero(p, QStringLiteral("codigo"), n));
    } else if (key == QLatin1String("in_gestiones")) {
        const QDate hoy = QDate::currentDate();
        const QDate desde = fechaParam(p, QStringLiteral("desde"), QDate(hoy.year(), hoy.month(), 1));
        out = datosGestiones(data, desde, fechaParam(p, QStringLiteral("hasta"), hoy));
    } else if (key == QLatin1String("in_interesados")) {
        out = datosInteresados(data, requerido(p, QStringLiteral("codigo"), n),
                               lista(requerido(p, QStringLiteral("clientes"), n)));
    } else if (key == QLatin1String("in_agendax")) {
        const QDate hoy = QDate::currentDate();
        CurrentAgent agente;
        if (!p.value(QStringLiteral("usuario")).trimmed().isEmpty()) {
            agente.usuario = p.value(QStringLiteral("usuario")).trimmed();
            agente.verSoloSuAgenda = true;
        }
        out = datosAgendax(data, fechaParam(p, QStringLiteral("desde"), hoy), fechaParam(p, QStringLiteral("hasta"), hoy),
                           agente);
        if (out.value(QStringLiteral("numero")).toInt() == 0)
            throw ReportError(QString::fromUtf8(kSinRegistros));
    } else if (key == QLatin1String("in_inmueblegastos")) {
        out = datosInmuebleGastos(data, requerido(p, QStringLiteral("codigo"), n));
    } else if (key.startsWith(QLatin1String("in_estadistica"))) {
        bool ok = false;
        const int numero = key.mid(14).toInt(&ok);
        if (!ok)
            throw ReportError(QStringLiteral("No existe el informe %1.").arg(n));
        out = datosEstadistica(data, numero);
    } else {
        conocido = false;
        // Any other template (an agency's own) is filled with the agency and the parameters.
        for (auto it = p.cbegin(); it != p.cend(); ++it)
            out.insert(it.key(), it.value());
        out.insert(QStringLiteral("empresa"), agencyData(data));
    }
    // Known reports print their own template whatever the case typed.
    if (key == QLatin1String("in_inmueblegestion"))
        tmpl = QStringLiteral("in_inmuebleGestion");
    else if (conocido && tmpl == n)
        tmpl = key;
    if (plantilla)
        *plantilla = tmpl;
    return out;
}

} // namespace tv::reports
