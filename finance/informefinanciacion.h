#pragma once

#include "cuadrofinanciacion.h"

#include <QDate>
#include <QVariantMap>

namespace tv::finance {

// The print template of the financing table.
inline constexpr const char* kPlantillaFinanciacion = "in_financiacion";

// The figures of a recalculated table as the template reads them: every
// amount already in its shown form ("1.234,56 €", "3,00 %"), the grid as
// "plazos" (column headings) and "filas" (rate, "actual" for the chosen
// rate's row, and "celdas" with "importe").
QVariantMap datosInformeFinanciacion(const CuadroFinanciacion& cuadro, const QDate& fecha);

// Shown forms shared by the screen and the print.
QString textoImporte(Money importe);
QString textoPorcentaje(Money porcentaje);
QString tituloPlazo(int anos);

} // namespace tv::finance
