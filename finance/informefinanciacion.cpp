#include "informefinanciacion.h"

#include <QVariantList>

namespace tv::finance {

QString textoImporte(Money importe)
{
    return importe.toSpanish(2, true);
}

QString textoPorcentaje(Money porcentaje)
{
    return porcentaje.toSpanish(2) + QStringLiteral(" %");
}

QString tituloPlazo(int anos)
{
    return QStringLiteral("%1 Años").arg(anos);
}

QVariantMap datosInformeFinanciacion(const CuadroFinanciacion& c, const QDate& fecha)
{
    QVariantMap d;
    d[QStringLiteral("fecha")] = fecha.toString(QStringLiteral("dd/MM/yyyy"));
    d[QStringLiteral("importeInmueble")] = textoImporte(c.importeInmueble);
    d[QStringLiteral("variable")] = textoPorcentaje(c.variable);
    d[QStringLiteral("importeVariable")] = textoImporte(c.importeVariable);
    d[QStringLiteral("importeFijo")] = textoImporte(c.importeFijo);
    d[QStringLiteral("totalOperacion")] = textoImporte(c.totalOperacion);
    d[QStringLiteral("importeEntrada")] = textoImporte(c.importeEntrada);
    d[QStringLiteral("importeHipoteca")] = textoImporte(c.importeHipoteca);
    d[QStringLiteral("anos")] = QString::number(c.anos);
    d[QStringLiteral("intereses")] = textoPorcentaje(c.intereses);
    d[QStringLiteral("cuota")] = textoImporte(c.cuota);

    QVariantList plazos;
    for (int anos : CuadroFinanciacion::kPlazos)
        plazos.append(QVariantMap{{QStringLiteral("titulo"), tituloPlazo(anos)}});
    d[QStringLiteral("plazos")] = plazos;

    QVariantList filas;
    for (int f = 0; f < CuadroFinanciacion::kFilas; ++f) {
        QVariantList celdas;
        for (int col = 0; col < CuadroFinanciacion::kColumnas; ++col)
            celdas.append(QVariantMap{{QStringLiteral("importe"), textoImporte(c.celdas[f][col])}});
        QVariantMap fila;
        fila[QStringLiteral("interes")] = textoPorcentaje(c.interes[f]);
        fila[QStringLiteral("actual")] = CuadroFinanciacion::kDesviosInteres[f] == 0;
        fila[QStringLiteral("celdas")] = celdas;
        filas.append(fila);
    }
    d[QStringLiteral("filas")] = filas;
    return d;
}

} // namespace tv::finance
