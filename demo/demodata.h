#pragma once

#include <QDate>
#include <QtGlobal>

namespace tv {

class Tdm;

// Fills a new data folder with a believable synthetic agency: agents,
// owners, clients, properties with features and prices, demands, discards,
// follow-ups and operations. The same seed always gives the same agency.
struct DemoSize {
    int agentes = 5;
    int propietarios = 150;
    int clientes = 250;
    int inmuebles = 300;
    int demandas = 200;
    int operaciones = 60;
    int descartes = 60;
    int gestiones = 400;
    int gastos = 80;
    int inmueblesConFotos = 60;
    // The agency's "today": entry dates fall in the three years before it and
    // reminders around it. Empty means the current date; a fixed date makes
    // the agency identical from one day to the next.
    QDate hoy;
};

// Works on the shared transaction of data (datos and Imagenes open) and
// commits it. Keys are written explicitly after the highest existing ones and
// every key generator is moved past them, so the screens number on from there.
void fillDemoAgency(Tdm& data, quint32 seed = 20261122, const DemoSize& size = {});

} // namespace tv
