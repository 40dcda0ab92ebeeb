#pragma once

#include <QString>

class QWidget;

namespace tv {
class DataSet;
struct CurrentAgent;
}

namespace tv::ui {

// The agent logged in (agent 0, "TODOS", administrator when nobody did or
// no data module exists yet).
const CurrentAgent& currentAgent();

// A register's records belong to the agent in their agent column: another
// agent who is not an administrator may neither change nor delete them. The
// refusal is an information message; the edit is cancelled at once and
// nothing is deleted. New records take the current agent.
struct Ownership {
    QString editRefused;
    QString deleteRefused;        // empty: deleting is not guarded
    QString insertRefused = {};   // non-empty: only administrators add records
    QString agentColumn = QStringLiteral("CODAGENTE");
    bool newRecordsTakeAgent = true;

    // The registers' rules, each with its screen's two messages.
    static Ownership inmuebles();
    static Ownership demandas();
    static Ownership clientes();
    static Ownership propietarios();
    static Ownership operaciones();
    // The agents screen: an agent changes only his own record (by CODIGO)
    // and only administrators add agents.
    static Ownership agentes();
};

// True when the current agent may change the data set's current row.
bool mayChange(DataSet& ds, const Ownership& rule);

// Installs the rule on a data set: beforeEdit and beforeDelete refuse
// (message, then Abort), beforeInsert refuses when only administrators add,
// onNewRecord writes the current agent. Messages go to parent.
void protect(DataSet& ds, const Ownership& rule, QWidget* parent);

// The restrictions the list screens apply for the current agent.
struct Restrictions {
    int agent = 0;
    bool administrador = true;
    bool ocultarDatosEconomicos = false;
    bool verSoloSusGestiones = false;
    bool verSoloSuAgenda = false;
    bool ocultarDatosInternos = false;
    bool ocultarClientes = false;
    bool ocultarPropietarios = false;

    static Restrictions current();
    // " WHERE column = agent" style filter for lists limited to the agent's
    // own rows: the condition text (no leading keyword), empty when unlimited.
    QString ownRows(bool limited, const QString& column = QStringLiteral("CODAGENTE")) const;
};

} // namespace tv::ui
