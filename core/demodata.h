#pragma once

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
};

void fillDemoAgency(Tdm& data, quint32 seed = 20261122, const DemoSize& size = {});

} // namespace tv
