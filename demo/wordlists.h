#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <array>
#include <vector>

namespace tv::demo {

// The words and tables of the synthetic agency. They live as UTF-8 text files
// in demo/datos/, compiled in under ":/demo/", so that a town or a sentence is
// changed without touching the generator.

struct Town {
    QString name;     // as in MUNICIPIOS.DESMUNIINE
    QString province; // as in MUNICIPIOS.DESPROVINCIA
    int ine = 0;
    int cp = 0;      // first postal code
    int cpCount = 0; // consecutive postal codes from cp
    int weight = 0;
    int priceFactor = 0; // percent of the base prices
    bool coast = false;
    double lat = 0;
    double lon = 0;
    QStringList zones;
};

struct Tipo {
    int codigo = 0;
    int familia = 0; // 1..8
    QString nombre;  // for texts
    QString mayus;   // TIPOINMUEBLE.DESCRIPCION
    QString ingles;
    QString ruso;
    int peso = 0;
    int m2Min = 0, m2Max = 0;
    int ventaMin = 0, ventaMax = 0; // cents per m²
    int alqMin = 0, alqMax = 0;     // cents per m² and month
};

struct TipoOperacion {
    QString nombre;      // TIPOOPERACION.DESCRIPCION
    QString enOperacion; // "en venta"
    QString cabecera;    // window poster heading
    QString cabeceraIngles;
};

// A feature flag drawn for every property: percent chance of "S" by family 1..8.
struct Flag {
    QByteArray column; // a column of INMUEBLES
    std::array<int, 8> percent{};
    QString texto; // how the description names it; empty: not named
};

struct Extranjero {
    QString nombre;
    bool mujer = false;
    QString pais;
};

struct ClaseGasto {
    QString tipo;         // TIPOGASTOS
    int min = 0, max = 0; // euros
    int peso = 0;
    QStringList conceptos;
};

struct WordLists {
    std::vector<Town> towns;
    std::vector<Tipo> tipos;
    std::vector<TipoOperacion> operaciones; // operation code - 1
    std::vector<Flag> flags;
    QStringList hombres, mujeres, apellidos;
    std::vector<Extranjero> extranjeros;
    QStringList calles, caminos;
    // Weighted lists hold each entry as many times as its weight, so that a
    // uniform pick follows the weights.
    QStringList siglas;
    QHash<QString, QString> nombreVia; // "CL" -> "Calle"
    QStringList estadosCiviles, situacionesLaborales;
    QStringList estudios;
    QStringList notasCliente, notasPropietario;
    std::array<QStringList, 8> textosInmueble; // by family 1..8
    QStringList notasInternas, motivosDescarte, resultadosGestion, recordatorios;
    QStringList departamentos, dominiosCorreo, bancos, meses;
    std::vector<ClaseGasto> gastos;
};

// Read on the first call, from then on shared and never changed (any thread
// may read them). A missing or malformed file throws std::runtime_error.
const WordLists& wordLists();

// One entry per line; a file with no entry or with an empty line is refused.
QStringList readList(const QString& path);

// Tab-separated rows under a first line that must name exactly `columns`;
// every row has that many fields.
std::vector<QStringList> readTable(const QString& path, const QStringList& columns);

} // namespace tv::demo
