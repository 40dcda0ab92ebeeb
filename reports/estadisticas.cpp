#include "reportdata.h"

#include "datoshelpers.h"
#include "dm.h"
#include "report.h"
#include "reportformat.h"

#include <cmath>

namespace tv::reports {

const QVector<Estadistica>& estadisticas()
{
    static const QVector<Estadistica> all = {
        {1, QStringLiteral("Estadística de Inmuebles por Zonas"), QStringLiteral("Estadística de Inmuebles por Zonas"),
         QStringLiteral("select z.descripcion,count(*)   from inmuebles i inner join zonas z on ( i.codtipozona = "
                        "z.codigo ) group by z.descripcion order by z.descripcion"),
         QStringLiteral("Zona"), QStringLiteral("Inmuebles"), false},
        {2, QStringLiteral("Precio medio por Zonas"), QStringLiteral("Precio medio por Zonas"),
         QStringLiteral("select z.descripcion,sum(i.euroimporte) / count(*) as Importe  from inmuebles i inner join "
                        "zonas z on ( i.codtipozona = z.codigo ) and i.codtipooperacion = 1 group by z.descripcion"),
         QStringLiteral("Zona"), QStringLiteral("Precio medio"), true},
        {3, QStringLiteral("Numero de Operaciones por Agente"), QStringLiteral("Numero de Operaciones por Agente"),
         QStringLiteral("select a.apeynom,count(*) from operaciones d inner join agentes a on ( d.codagente "
                        "=a.codigo ) group by a.apeynom order by a.apeynom"),
         QStringLiteral("Agente"), QStringLiteral("Operaciones"), false},
        {4, QStringLiteral("Ventas por Agente"), QStringLiteral("Ventas por Agente"),
         QStringLiteral("select a.apeynom,sum(d.importeinmueble) from operaciones d inner join agentes a on ( "
                        "d.codagente =a.codigo ) group by a.apeynom order by a.apeynom"),
         QStringLiteral("Agente"), QStringLiteral("Importe"), true},
        {5, QStringLiteral("Captaciones por Agente"), QStringLiteral("Captaciones por Agente"),
         QStringLiteral("select a.apeynom,count(*) from inmuebles i inner join agentes a on (i.codagente = "
                        "a.codigo ) group by a.apeynom order by a.apeynom"),
         QStringLiteral("Agente"), QStringLiteral("Captaciones"), false},
        {6, QStringLiteral("Captaciones por tipo de Origen"), QStringLiteral("Captaciones por tipo de Origen"),
         QStringLiteral("select a.descripcion,count(*) from inmuebles i inner join origenes a on (i.codorigen= "
                        "a.codigo ) group by a.descripcion order by a.descripcion"),
         QStringLiteral("Origen"), QStringLiteral("Captaciones"), false},
        {7, QStringLiteral("Evolución de operaciones en el tiempo"), QStringLiteral("Evolución de las operaciones"),
         QStringLiteral("select O.anomes,count(*) from operaciones o group by o.anomes order by o.anomes"),
         QStringLiteral("Año y mes"), QStringLiteral("Operaciones"), false},
        {8, QStringLiteral("Evolución monetaria de las operaciones"),
         QStringLiteral("Evolución monetaria de las operaciones"),
         QStringLiteral("select O.anomes,sum(o.importeoperacion) from operaciones o group by o.anomes order by o.anomes"),
         QStringLiteral("Año y mes"), QStringLiteral("Importe"), true},
    };
    return all;
}

QVariantMap datosEstadistica(Tdm& data, int numero)
{
    if (numero < 1 || numero > estadisticas().size())
        throw ReportError(QStringLiteral("No existe la estadística %1.").arg(numero));
    const Estadistica& e = estadisticas().at(numero - 1);
    Query q(data.datos, data.Transacion, e.consulta);
    struct Fila {
        QString etiqueta;
        double valor;
    };
    QVector<Fila> filas;
    for (q.open(); !q.eof(); q.next())
        filas.append({q.field(0).asString().trimmed(), q.field(1).isNull() ? 0.0 : q.field(1).asDouble()});
    q.close();

    double maximo = 0;
    double suma = 0;
    for (const Fila& f : filas) {
        maximo = std::max(maximo, std::fabs(f.valor));
        suma += f.valor;
    }
    QVariantList rows;
    for (const Fila& f : filas) {
        // The bar is a share of the largest value, kept visible when tiny.
        const int barra = maximo > 0 ? std::clamp(int(std::lround(std::fabs(f.valor) * 100.0 / maximo)), 1, 100) : 1;
        rows.append(QVariantMap{{QStringLiteral("etiqueta"), f.etiqueta.isEmpty() ? QStringLiteral("(sin indicar)") : f.etiqueta},
                                {QStringLiteral("valor"), e.importe ? formatEuros(f.valor) : tv::reports::numero(f.valor, 0)},
                                {QStringLiteral("barra"), barra},
                                {QStringLiteral("resto"), 100 - barra},
                                {QStringLiteral("completa"), barra >= 100}});
    }
    marcarFilas(rows);
    QVariantMap out;
    out.insert(QStringLiteral("titulo"), e.impreso);
    out.insert(QStringLiteral("columna_etiqueta"), e.columnaEtiqueta);
    out.insert(QStringLiteral("columna_valor"), e.columnaValor);
    out.insert(QStringLiteral("filas"), rows);
    out.insert(QStringLiteral("numero"), int(rows.size()));
    // An average of averages means nothing: only counts and sums get a total.
    if (numero != 2)
        out.insert(QStringLiteral("total"), e.importe ? formatEuros(suma) : tv::reports::numero(suma, 0));
    out.insert(QStringLiteral("empresa"), agencyData(data));
    return out;
}

} // namespace tv::reports
