#include "tablaauxiliar.h"

namespace tv::lookups {

namespace {

using ui::Column;
using ui::ColumnKind;

const QString kDescripcion = QStringLiteral("Debe indicar la descripción");

Column codigo()
{
    Column c{QStringLiteral("CODIGO"), QStringLiteral("Código"), ColumnKind::Integer};
    c.width = 8;
    return c;
}

Column descripcion(const QString& required = kDescripcion)
{
    Column c{QStringLiteral("DESCRIPCION"), QStringLiteral("Descripción")};
    c.required = required;
    return c;
}

// The simple members: code and description only.
TablaDef simple(const char* clase, const char* comando, const char* titulo, const char* tabla, const char* procedimiento)
{
    return {QString::fromLatin1(clase), QString::fromLatin1(comando), QString::fromUtf8(titulo),
            QString::fromLatin1(tabla), QString::fromLatin1(procedimiento), QString(),
            {codigo(), descripcion()}};
}

QList<TablaDef> definiciones()
{
    QList<TablaDef> l;

    TablaDef zonas{QStringLiteral("TfrmTipoZonas"), QStringLiteral("tipos-zonas"), QStringLiteral("Tipos de Zonas"),
                   QStringLiteral("ZONAS"), QStringLiteral("CODZONA"), QString(),
                   {codigo(), descripcion(QStringLiteral("Debe indicar la descripción de la zona"))}};
    zonas.columnaPadre = QStringLiteral("CODMUNIINE");
    zonas.mensajeSinPadre = QStringLiteral("Debe seleccionar un municipio");
    l.append(zonas);

    l.append(simple("TfrmEstados", "tipos-estados", "Tipos de Estados", "ESTADO", "CODESTADO"));

    TablaDef tipos{QStringLiteral("TfrmTipoInmuebles"), QStringLiteral("tipos-inmuebles"),
                   QStringLiteral("Tipos de Inmuebles"), QStringLiteral("TIPOINMUEBLE"),
                   QStringLiteral("CODTIPOINMUEBLE"), QString(), {codigo(), descripcion()}};
    Column familia{QStringLiteral("CODFAMILIA"), QStringLiteral("Familia"), ColumnKind::Lookup,
                   QStringLiteral("familias")};
    familia.required = QStringLiteral("Debe indicar la familia a la que pertenece");
    tipos.columnas.append(familia);
    for (const auto& [col, cap] : {std::pair{"DESCRIPCION_CASTELLANO", "Castellano"}, {"DESCRIPCION_CATALAN", "Catalán"},
                                   {"DESCRIPICON_INGLES", "Inglés"}, {"DESCRIPCION_ALEMAN", "Alemán"}}) {
        Column t{QString::fromLatin1(col), QString::fromUtf8(cap)};
        t.page = QStringLiteral("Traducciones");
        t.inGrid = false;
        tipos.columnas.append(t);
    }
    tipos.sqlBorrado = QStringLiteral(" SELECT COUNT(*) FROM INMUEBLES WHERE CODTIPOINMUEBLE =:CODTIPOINMUEBLE");
    tipos.mensajeBorrado = QStringLiteral("No se puede eliminar, existen inmuebles de este tipo");
    l.append(tipos);

    TablaDef familias{QStringLiteral("TfrmTipoFamilia"), QStringLiteral("tipos-familias"),
                      QStringLiteral("Tipos de Familias"), QStringLiteral("FAMILIA"),
                      QStringLiteral("CODTIPOFAMILIA"), QString(), {codigo(), descripcion()}};
    Column plantilla{QStringLiteral("CODPLANTILLA"), QStringLiteral("Plantilla de la ficha"), ColumnKind::Lookup,
                     QStringLiteral("plantillas")};
    plantilla.required = QStringLiteral("Debe indicar la plantilla");
    familias.columnas.append(plantilla);
    familias.sqlBorrado = QStringLiteral(" SELECT COUNT(*) FROM TIPOINMUEBLE WHERE CODFAMILIA=:CODFAMILIA ");
    familias.mensajeBorrado = QStringLiteral("La familia no se puede eliminar porque contiene tipos de inmuebles");
    familias.borradoEsError = true;
    l.append(familias);

    l.append(simple("TfrmTipoGastos", "tipos-gastos", "Tipos de Gastos", "TIPOGASTOS", "CODGASTOS"));
    l.append(simple("TfrmOrigenPubli", "origenes-publicitarios", "Orígenes Publicitarios", "ORIGENES", "CODORIGEN"));
    l.append(simple("TfrmTipoGestiones", "tipos-gestiones", "Tipos de Gestiones", "TIPOGESTIONES", "CODTIPOGESTION"));
    l.append(simple("TfrmTipoOperacion", "tipos-operaciones", "Tipos de Operaciones", "TIPOOPERACION",
                    "CODTIPOOPERACION"));

    TablaDef departamentos = simple("TfrmDepartamento", "departamentos", "Departamentos", "DEPARTAMENTOS",
                                    "CODDEPARTAMENTO");
    departamentos.soloAdministradores = true;
    l.append(departamentos);

    l.append(simple("TfrmPerfiles", "tipos-perfiles", "Tipos de Perfiles", "PERFILES", "CODTIPOPERFIL"));

    TablaDef iva{QStringLiteral("TfrmIva"), QStringLiteral("tipos-iva"), QStringLiteral("Tipos de Iva"),
                 QStringLiteral("COMUN_IVA"), QString(), QStringLiteral("GEN_IVA"), {codigo(), descripcion()}};
    Column porcentaje{QStringLiteral("PORCENTAJE"), QStringLiteral("Porcentaje"), ColumnKind::Number};
    porcentaje.required = QStringLiteral("Debe el porcentaje a aplicar");
    iva.columnas.append(porcentaje);
    l.append(iva);

    l.append(simple("TfrmTiposVisitas", "tipos-citas", "Tipos de Citas", "TIPOS_VISITAS", "CODTIPOVISITA"));
    return l;
}

} // namespace

const QList<TablaDef>& tablasAuxiliares()
{
    static const QList<TablaDef> list = definiciones();
    return list;
}

const TablaDef* tablaAuxiliar(const QString& claseOComando)
{
    for (const TablaDef& d : tablasAuxiliares())
        if (d.clase == claseOComando || d.comando == claseOComando)
            return &d;
    return nullptr;
}

} // namespace tv::lookups
