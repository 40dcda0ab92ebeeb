#pragma once

#include <QString>

namespace tv {

class Database;
class Transaction;

// The agent logged in, one per process, consulted by every register screen.
struct CurrentAgent {
    int codigo = 0;
    QString usuario = QStringLiteral("TODOS");
    bool ocultarDatosEconomicos = false;
    bool verSoloSusGestiones = false;
    bool verSoloSuAgenda = false;
    bool ocultarDatosInternos = false;
    bool ocultarClientes = false;
    bool ocultarPropietarios = false;
    bool administrador = true;

    // A code below 1 (no login took place) gives agent 0, "TODOS", no
    // restrictions, administrator; otherwise the agent's row decides.
    static CurrentAgent load(Database& db, Transaction& tr, int codigo);
};

} // namespace tv
