#include "ownership.h"

#include "currentagent.h"
#include "dataset.h"
#include "dialogs.h"
#include "dm.h"
#include "sqltext.h"

#include <QPointer>
#include <QWidget>

namespace tv::ui {

const CurrentAgent& currentAgent()
{
    static const CurrentAgent nobody;
    return dm ? dm->agente : nobody;
}

Ownership Ownership::inmuebles()
{
    return {QStringLiteral("No tiene privilegios para modificar este inmueble debido a que pertenece a otro agente"),
            QStringLiteral("No tiene privilegios para eliminar este inmueble debido a que pertenece a otro agente")};
}

Ownership Ownership::demandas()
{
    return {QStringLiteral("No tiene privilegios para modificar esta demanda debido a que pertenece a otro agente"),
            QStringLiteral("No tiene privilegios para eliminar esta demanda debido a que pertenece a otro agente")};
}

Ownership Ownership::clientes()
{
    return {QStringLiteral("No tiene privilegios para modificar este cliente debido a que pertenece a otro agente"),
            QString()};
}

Ownership Ownership::propietarios()
{
    return {
        QStringLiteral("No tiene privilegios para modificar este propietario debido a que pertenece a otro agente"),
        QStringLiteral("No tiene privilegios para eliminar este propietario debido a que pertenece a otro agente")};
}

Ownership Ownership::operaciones()
{
    return {QStringLiteral("No tiene privilegios para modificar esta operación debido a que pertenece a otro agente"),
            QString()};
}

Ownership Ownership::agentes()
{
    Ownership o{QStringLiteral("No tiene privilegios para modificar este agente"),
                QStringLiteral("No tiene privilegios para eliminar este agente"),
                QStringLiteral("No tiene privilegios añadir nuevos agentes"), QStringLiteral("CODIGO"), false};
    return o;
}

bool mayChange(DataSet& ds, const Ownership& rule)
{
    const CurrentAgent& me = currentAgent();
    if (me.administrador)
        return true;
    // A row being inserted is the agent's own until it is saved.
    if (ds.state() == DataSet::State::Insert)
        return true;
    if (ds.recNo() < 0 || ds.fieldIndex(rule.agentColumn) < 0)
        return true;
    const QVariant owner = ds.fieldByName(rule.agentColumn).value();
    return owner.isValid() && !owner.isNull() && owner.toLongLong() == me.codigo;
}

void protect(DataSet& ds, const Ownership& rule, QWidget* parent)
{
    const QPointer<QWidget> where(parent);
    ds.beforeEdit += [rule, where](DataSet& d) {
        if (!mayChange(d, rule)) {
            dialogs().information(rule.editRefused, where);
            throw Abort();
        }
    };
    if (!rule.deleteRefused.isEmpty()) {
        ds.beforeDelete += [rule, where](DataSet& d) {
            if (!mayChange(d, rule)) {
                dialogs().information(rule.deleteRefused, where);
                throw Abort();
            }
        };
    }
    if (!rule.insertRefused.isEmpty()) {
        ds.beforeInsert += [rule, where](DataSet&) {
            if (!currentAgent().administrador) {
                dialogs().information(rule.insertRefused, where);
                throw Abort();
            }
        };
    }
    if (rule.newRecordsTakeAgent) {
        ds.onNewRecord += [rule](DataSet& d) {
            if (d.fieldIndex(rule.agentColumn) >= 0 && currentAgent().codigo > 0)
                d.fieldByName(rule.agentColumn).setValue(currentAgent().codigo);
        };
    }
}

Restrictions Restrictions::current()
{
    const CurrentAgent& a = currentAgent();
    Restrictions r;
    r.agent = a.codigo;
    r.administrador = a.administrador;
    r.ocultarDatosEconomicos = a.ocultarDatosEconomicos;
    r.verSoloSusGestiones = a.verSoloSusGestiones;
    r.verSoloSuAgenda = a.verSoloSuAgenda;
    r.ocultarDatosInternos = a.ocultarDatosInternos;
    r.ocultarClientes = a.ocultarClientes;
    r.ocultarPropietarios = a.ocultarPropietarios;
    return r;
}

QString Restrictions::ownRows(bool limited, const QString& column) const
{
    if (!limited)
        return {};
    return column + QStringLiteral(" = ") + sql::number(qlonglong(agent));
}

} // namespace tv::ui
