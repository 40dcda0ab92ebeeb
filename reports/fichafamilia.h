#pragma once

#include <QString>
#include <QVector>

namespace tv::reports {

// What a property's record sheet shows for its family, as tables of
// {column, caption} so the eight sheets share one gathering routine.
struct FichaFamilia {
    enum class Medida { Texto, Entero, Numero, Metros, MetrosLineales, Euros, Porcentaje, Anyo };
    struct Dato {
        const char* columna; // an INMUEBLES column, or "#DORMITORIOS" (the three room counts added)
        const char* etiqueta;
        Medida medida;
    };
    struct Caracteristica {
        const char* marca;   // the S/N flag
        const char* detalle; // its remark column, or nullptr
        const char* nombre;
    };

    int plantilla = 1;             // FAMILIA.CODPLANTILLA
    QString nombrePlantilla;       // in_ficha_piso ...
    QString tituloDatos;           // heading of the surfaces and counts
    QString tituloCaracteristicas; // heading of the feature flags
    QString tituloDatosFamilia;    // heading of the family page's own data
    QVector<Dato> datos;           // surfaces and counts
    QVector<Dato> datosFamilia;    // SOLAR_, EDIFICIO_ and RUSTICA_ columns
    QVector<Caracteristica> caracteristicas;

    // 1 piso, 2 and 3 casa, 4 nave, 5 local, 6 parking, 7 solar,
    // 8 edificio, 9 rustica; anything else reads as a flat.
    static const FichaFamilia& dePlantilla(int plantilla);
    // The template number for a family code when FAMILIA has none
    // (1 flat, 2 house, 3 land, 4 industrial, 5 premises, 6 parking).
    static int plantillaDeFamilia(int familia);
    // Availability flags printed on every sheet.
    static const QVector<Caracteristica>& disponibilidad();
};

} // namespace tv::reports
