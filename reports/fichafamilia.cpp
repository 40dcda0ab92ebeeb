#include "fichafamilia.h"

#include <QMap>

namespace tv::reports {

namespace {

using M = FichaFamilia::Medida;
using D = FichaFamilia::Dato;
using C = FichaFamilia::Caracteristica;

const QVector<C> kVivienda = {
    {"CASCENSOR", "SASCENSOR", "Ascensor"},
    {"CCALEFACCION", "SCALEFACCION", "Calefacción"},
    {"CAIRE", "SAIRE", "Aire acondicionado"},
    {"CGARAJE", "SGARAJE", "Garaje"},
    {"CTRASTERO", "STRASTERO", "Trastero"},
    {"CTERRAZA", "STERRAZA", "Terraza"},
    {"CEXTERIOR", nullptr, "Exterior"},
    {"CMUEBLES", "SMUEBLES", "Amueblado"},
    {"CARMARIOS", "SARMARIOS", "Armarios empotrados"},
    {"CCOCINA", "SCOCINA", "Cocina equipada"},
    {"CCOMEDOR", "SCOMEDOR", "Comedor"},
    {"CLAVADERO", "SLAVADERO", "Lavadero"},
    {"CPISCINA", "SPISCINA", "Piscina"},
    {"CJARDIN", "SJARDIN", "Jardín"},
    {"CCHIMENEA", "SCHIMENEA", "Chimenea"},
    {"CPUERTABLINDADA", "SPUERTABLINDADA", "Puerta blindada"},
    {"CVIDRIOSDOBLES", "SVIDRIOSDOBLES", "Doble acristalamiento"},
    {"CCARPEXT", "SCARPEXT", "Carpintería exterior"},
    {"CCARPINT", "SCARPINT", "Carpintería interior"},
    {"CSUELO", "SSUELO", "Suelo"},
    {"CPINTURA", "SPINTURA", "Pintura"},
    {"CSOLEADO", "SSOLEADO", "Soleado"},
    {"CVISTAS", "SVISTA", "Vistas"},
    {"CORIENTACION", "SORIENTACION", "Orientación"},
    {"CGAS", "SGAS", "Gas"},
    {"CTELEFONO", "STELEFONO", "Teléfono"},
    {"CADSL", "SADSL", "Internet / ADSL"},
    {"CACESIBILIDAD", "SACCESIBILIDAD", "Accesible"},
    {"CSEGURIDAD", "SSEGURIDAD", "Seguridad"},
    {"CSISTEMASEGURIDA", "SSISTEMASEGURIDA", "Sistema de seguridad"},
    {"CCAJAFUERTE", "SCAJAFUERTE", "Caja fuerte"},
    {"CVPO", "SVPO", "Vivienda de protección oficial"},
    {"CNUEVA_CONSTRUCCION", nullptr, "Obra nueva"},
};

QVector<C> casa()
{
    QVector<C> c = kVivienda;
    c.insert(5, {"CPLANTAS", "SPLANTAS", "Varias plantas"});
    return c;
}

const QVector<C> kNave = {
    {"CMUELLE", "SMUELLE", "Muelle de carga"},
    {"CAISLANTE", "SAISLANTE", "Aislamiento"},
    {"COFICINA", "SOFICINA", "Oficina"},
    {"CALTILLO", "SALTILLO", "Altillo"},
    {"CSALIDAHUMOS", "SSALIDAHUMOS", "Salida de humos"},
    {"CSALIDAEMERGENCIA", "SSALIDAEMERGENCIA", "Salida de emergencia"},
    {"CSISTEMAANT", "SSISTEMAANT", "Sistema antiincendios"},
    {"CSEGURIDAD", "SSEGURIDAD", "Seguridad"},
    {"CVIGILANTE", "SVIGILANTE", "Vigilante"},
    {"CGARAJE", "SGARAJE", "Aparcamiento"},
    {"CTERRAZA", "STERRAZA", "Terraza"},
    {"CLUZ", "SLUZ", "Luz"},
    {"CAGUA", "SAGUA", "Agua"},
    {"CGAS", "SGAS", "Gas"},
    {"CPOTENCIA", "SPOTENCIA", "Potencia eléctrica"},
    {"CAIRE", "SAIRE", "Aire acondicionado"},
    {"CCALEFACCION", "SCALEFACCION", "Calefacción"},
    {"CTELEFONO", "STELEFONO", "Teléfono"},
    {"CADSL", "SADSL", "Internet / ADSL"},
    {"CINTRANET", "SINTRANET", "Red de datos"},
    {"CDIVISIBLE", "SDIVISIBLE", "Divisible"},
    {"CCERRADO", "SCERRADO", "Recinto cerrado"},
    {"CACESIBILIDAD", "SACCESIBILIDAD", "Accesible"},
};

const QVector<C> kLocal = {
    {"CESCAPARATE", "SESCAPARATE", "Escaparate"},
    {"CPLANTABAJA", "SPLANTABAJA", "En planta baja"},
    {"CESQUINA", "SESQUINA", "Esquina"},
    {"CDIVISIBLE", "SDIVISIBLE", "Divisible"},
    {"CCLASENEGOCIO", "SCLASENEGOCIO", "Apto para negocio"},
    {"CSALIDAHUMOS", "SSALIDAHUMOS", "Salida de humos"},
    {"CSALIDAEMERGENCIA", "SSALIDAEMERGENCIA", "Salida de emergencia"},
    {"CAIRE", "SAIRE", "Aire acondicionado"},
    {"CCALEFACCION", "SCALEFACCION", "Calefacción"},
    {"CALTILLO", "SALTILLO", "Altillo"},
    {"COFICINA", "SOFICINA", "Oficina"},
    {"CGARAJE", "SGARAJE", "Garaje"},
    {"CVIGILANTE", "SVIGILANTE", "Vigilante"},
    {"CSEGURIDAD", "SSEGURIDAD", "Seguridad"},
    {"CSISTEMASEGURIDA", "SSISTEMASEGURIDA", "Sistema de seguridad"},
    {"CAGUA", "SAGUA", "Agua"},
    {"CLUZ", "SLUZ", "Luz"},
    {"CGAS", "SGAS", "Gas"},
    {"CTELEFONO", "STELEFONO", "Teléfono"},
    {"CADSL", "SADSL", "Internet / ADSL"},
    {"CINTRANET", "SINTRANET", "Red de datos"},
    {"CACESIBILIDAD", "SACCESIBILIDAD", "Accesible"},
    {"CPUERTABLINDADA", "SPUERTABLINDADA", "Puerta blindada"},
};

const QVector<C> kParking = {
    {"CCERRADO", "SCERRADO", "Plaza cerrada"},
    {"CCOLUMNAS", "SCOLUMNAS", "Columnas"},
    {"CSUBTERRANEO", "SSUBTERRANEO", "Subterráneo"},
    {"CSEGURIDAD", "SSEGURIDAD", "Seguridad"},
    {"CVIGILANTE", "SVIGILANTE", "Vigilante"},
    {"CSISTEMASEGURIDA", "SSISTEMASEGURIDA", "Sistema de seguridad"},
    {"CLUZ", "SLUZ", "Luz"},
    {"CASCENSOR", "SASCENSOR", "Ascensor"},
    {"CACESIBILIDAD", "SACCESIBILIDAD", "Accesible"},
};

const QVector<C> kSolar = {
    {"CURBANIZADO", "SURBANIZADO", "Urbanizado"},
    {"CALUMBRADO", "SALUMBRADO", "Alumbrado público"},
    {"CAGUA", "SAGUA", "Agua"},
    {"CLUZ", "SLUZ", "Luz"},
    {"CALCANTARILLADO", "SALCANTARILLADO", "Alcantarillado"},
    {"CASFALTADO", "SASFALTADO", "Asfaltado"},
    {"CGAS", "SGAS", "Gas"},
    {"CTELEFONO", "STELEFONO", "Teléfono"},
    {"CCERRADO", "SCERRADO", "Vallado"},
    {"CJARDIN", "SJARDIN", "Jardín"},
    {"CPISCINA", "SPISCINA", "Piscina"},
    {"CGARAJE", "SGARAJE", "Garaje"},
    {"CCALEFACCION", "SCALEFACCION", "Calefacción"},
    {"CVISTAS", "SVISTA", "Vistas"},
    {"CESQUINA", "SESQUINA", "Esquina"},
};

const QVector<C> kEdificio = {
    {"CASCENSOR", "SASCENSOR", "Ascensor"},
    {"CCALEFACCION", "SCALEFACCION", "Calefacción"},
    {"CAIRE", "SAIRE", "Aire acondicionado"},
    {"CGARAJE", "SGARAJE", "Garaje"},
    {"CTRASTERO", "STRASTERO", "Trasteros"},
    {"CPISCINA", "SPISCINA", "Piscina"},
    {"CJARDIN", "SJARDIN", "Jardín"},
    {"CSEGURIDAD", "SSEGURIDAD", "Seguridad"},
    {"CVIGILANTE", "SVIGILANTE", "Conserje / vigilante"},
    {"CSISTEMAANT", "SSISTEMAANT", "Sistema antiincendios"},
    {"CSALIDAEMERGENCIA", "SSALIDAEMERGENCIA", "Salida de emergencia"},
    {"CACESIBILIDAD", "SACCESIBILIDAD", "Accesible"},
    {"CLUZ", "SLUZ", "Luz"},
    {"CAGUA", "SAGUA", "Agua"},
    {"CGAS", "SGAS", "Gas"},
    {"CTELEFONO", "STELEFONO", "Teléfono"},
    {"CADSL", "SADSL", "Internet / ADSL"},
};

const QVector<C> kRustica = {
    {"CAGUA", "SAGUA", "Agua"},
    {"CLUZ", "SLUZ", "Luz"},
    {"CCERRADO", "SCERRADO", "Vallada"},
    {"CVISTAS", "SVISTA", "Vistas"},
    {"CPISCINA", "SPISCINA", "Piscina"},
    {"CJARDIN", "SJARDIN", "Jardín"},
    {"CGARAJE", "SGARAJE", "Garaje"},
    {"CCHIMENEA", "SCHIMENEA", "Chimenea"},
    {"CCALEFACCION", "SCALEFACCION", "Calefacción"},
    {"CTELEFONO", "STELEFONO", "Teléfono"},
};

const QVector<D> kDatosPiso = {
    {"CSUPER1", "Superficie construida", M::Metros},
    {"CSUPERF1", "Superficie útil", M::Metros},
    {"#DORMITORIOS", "Dormitorios", M::Entero},
    {"CHABDOBLES", "Dormitorios dobles", M::Entero},
    {"CHABSENCILLAS", "Dormitorios sencillos", M::Entero},
    {"CNUMSUITE", "Suites", M::Entero},
    {"CNUMBANOS", "Baños", M::Entero},
    {"CNUMASEOS", "Aseos", M::Entero},
    {"PLANTA", "Planta", M::Texto},
    {"CALTURA", "Altura", M::Numero},
    {"SANOCONSTRUCCION", "Año de construcción", M::Texto},
    {"SCOMUNIDAD", "Gastos de comunidad", M::Texto},
};

QVector<D> datosCasa()
{
    QVector<D> d = kDatosPiso;
    d.insert(2, {"CSUPSOLAR", "Superficie de parcela", M::Metros});
    d.removeIf([](const D& x) { return QLatin1String(x.columna) == QLatin1String("PLANTA"); });
    return d;
}

const QVector<D> kDatosNave = {
    {"CSUPER1", "Superficie construida", M::Metros},
    {"CSUPSOLAR", "Superficie de parcela", M::Metros},
    {"CSUPER2", "Superficie por planta", M::Metros},
    {"CSUPER3", "Altura libre", M::MetrosLineales},
    {"CANCHO", "Ancho", M::MetrosLineales},
    {"CFONDO", "Fondo", M::MetrosLineales},
    {"CNUMBANOS", "Baños / vestuarios", M::Entero},
    {"CPLAZAS", "Plazas de aparcamiento", M::Entero},
    {"SANOCONSTRUCCION", "Año de construcción", M::Texto},
};

const QVector<D> kDatosLocal = {
    {"CSUPER1", "Superficie construida", M::Metros},
    {"CSUPERF1", "Superficie útil", M::Metros},
    {"CSUPSOLAR", "Superficie total", M::Metros},
    {"CANCHO", "Fachada", M::MetrosLineales},
    {"CFONDO", "Fondo", M::MetrosLineales},
    {"CALTO", "Altura", M::MetrosLineales},
    {"SESCAPARATE", "Escaparate", M::Texto},
    {"CNUMBANOS", "Baños", M::Entero},
    {"PLANTA", "Planta", M::Texto},
    {"SCOMUNIDAD", "Gastos de comunidad", M::Texto},
};

const QVector<D> kDatosParking = {
    {"CPLAZAS", "Plazas", M::Entero},
    {"CSUPER1", "Superficie", M::Metros},
    {"CALTO", "Altura", M::MetrosLineales},
    {"CANCHO", "Ancho", M::MetrosLineales},
    {"CFONDO", "Fondo", M::MetrosLineales},
    {"PLANTA", "Planta", M::Texto},
    {"SCOMUNIDAD", "Gastos de comunidad", M::Texto},
};

const QVector<D> kDatosSolar = {
    {"CSUPER1", "Superficie total", M::Metros},
    {"CSUPER2", "Superficie de parcela", M::Metros},
    {"CSUPER3", "Superficie de techo", M::Metros},
    {"CSUPER4", "Ancho de fachada", M::MetrosLineales},
};

const QVector<D> kSolarUrbanismo = {
    {"SOLAR_CLASESUELO", "Clase de suelo", M::Texto},
    {"SOLAR_USOS", "Usos", M::Texto},
    {"SOLAR_CLAVE", "Clave urbanística", M::Texto},
    {"SOLAR_POLIGONO", "Polígono", M::Texto},
    {"SOLAR_PARCELA", "Parcela", M::Texto},
    {"SOLAR_PLANACTUAL", "Planeamiento actual", M::Texto},
    {"SOLAR_PLANDESARROLLO", "Planeamiento de desarrollo", M::Texto},
    {"SOLAR_SISTEMA", "Sistema de actuación", M::Texto},
    {"SOLAR_PLAZOS", "Plazos", M::Texto},
    {"SOLAR_PARCELAMINIMA", "Parcela mínima", M::Metros},
    {"SOLAR_DENSIDAD", "Densidad (viviendas/ha)", M::Numero},
    {"SOLAR_TIPOLOGIA", "Tipología", M::Texto},
    {"SOLAR_NUMEROVIVIENDAS", "Número de viviendas", M::Entero},
    {"SOLAR_TIPOLOGIAVIVIENDA", "Tipología de vivienda", M::Texto},
    {"SOLAR_COEFICIENTE", "Coeficiente de edificabilidad", M::Numero},
    {"SOLAR_OCUPACION", "Ocupación", M::Porcentaje},
    {"SOLAR_URBANIZADO", "Urbanización", M::Texto},
    {"SOLAR_GASTOSURBANIZACION", "Gastos de urbanización", M::Euros},
    {"SOLAR_AFECCIONES", "Afecciones", M::Texto},
    {"SOLAR_CARGAS", "Cargas", M::Texto},
    {"SOLAR_CESIONES", "Cesiones", M::Texto},
};

const QVector<D> kDatosEdificio = {
    {"CSUPER1", "Superficie construida", M::Metros},
    {"CSUPSOLAR", "Superficie de parcela", M::Metros},
};

const QVector<D> kEdificioDatos = {
    {"EDIFICIO_SUPERRASANTESOBRE", "Superficie sobre rasante", M::Metros},
    {"EDIFICIO_SUPERRASANTEBAJO", "Superficie bajo rasante", M::Metros},
    {"EDIFICIO_PLANTASSOBRERESANTA", "Plantas sobre rasante", M::Entero},
    {"EDIFICIO_PLANTASBAJORASANTE", "Plantas bajo rasante", M::Entero},
    {"EDIFICIO_NUMVIVIENDAS", "Número de viviendas", M::Entero},
    {"EDIFICIO_PLAZASPARKING", "Plazas de parking", M::Entero},
    {"EDIFICIO_ANOCONSTRUCCION", "Año de construcción", M::Anyo},
    {"EDIFICIO_REFORMAS", "Reformas", M::Texto},
    {"EDIFICIO_ALTURAMAXIMA", "Altura máxima", M::MetrosLineales},
    {"EDIFICIO_USOACTUAL", "Uso actual", M::Texto},
    {"EDIFICIO_USOSPOSIBLES", "Usos posibles", M::Texto},
    {"EDIFICIO_OCUPACION", "Ocupación", M::Porcentaje},
    {"EDIFICIO_RENTABILIDAD", "Rentabilidad", M::Porcentaje},
    {"EDIFICIO_EXPLOTADOR", "Explotador", M::Texto},
    {"EDIFICIO_CONTRATO", "Contrato", M::Texto},
    {"EDIFICIO_ANOSCONTRATO", "Años de contrato", M::Entero},
    {"EDIFICIO_CARGAS", "Cargas", M::Texto},
    {"EDIFICIO_AFECCIONES", "Afecciones", M::Texto},
};

const QVector<D> kDatosRustica = {
    {"CSUPER1", "Superficie total", M::Metros},
    {"CSUPSOLAR", "Superficie construida", M::Metros},
};

const QVector<D> kRusticaDatos = {
    {"RUSTICA_CULTIVO", "Tipo de cultivo", M::Texto},
    {"RUSTICA_ARBOLADO", "Tipo de arbolado", M::Texto},
    {"RUSTICA_ACCESO", "Acceso", M::Texto},
    {"RUSTICA_CIERRE", "Tipo de cierre", M::Texto},
    {"RUSTICA_CAZA", "Variedad de caza", M::Texto},
    {"RUSTICA_CONSTRUCCIONES", "Construcciones", M::Texto},
    {"RUSTICA_LUZ", "Luz", M::Texto},
    {"RUSTICA_PRECIOHEC", "Precio por hectárea", M::Euros},
};

QMap<int, FichaFamilia> build()
{
    QMap<int, FichaFamilia> m;
    auto add = [&m](int n, const char* name, QVector<D> datos, QVector<C> car, QString tituloFamilia = {},
                    QVector<D> datosFamilia = {}) {
        // Section headings of the shared sheet body (informes/_ficha.html).
        static const QMap<QString, QPair<QString, QString>> headings = {
            {QStringLiteral("in_ficha_piso"), {QStringLiteral("Características de la vivienda"), QStringLiteral("Equipamiento y calidades")}},
            {QStringLiteral("in_ficha_casa"), {QStringLiteral("Características de la vivienda"), QStringLiteral("Equipamiento y calidades")}},
            {QStringLiteral("in_ficha_nave"), {QStringLiteral("Características de la nave"), QStringLiteral("Instalaciones")}},
            {QStringLiteral("in_ficha_local"), {QStringLiteral("Características del local"), QStringLiteral("Instalaciones")}},
            {QStringLiteral("in_ficha_parking"), {QStringLiteral("Características de la plaza"), QStringLiteral("Equipamiento")}},
            {QStringLiteral("in_ficha_solar"), {QStringLiteral("Superficies"), QStringLiteral("Servicios")}},
            {QStringLiteral("in_ficha_edificio"), {QStringLiteral("Superficies"), QStringLiteral("Instalaciones")}},
            {QStringLiteral("in_ficha_rustica"), {QStringLiteral("Superficies"), QStringLiteral("Servicios e instalaciones")}},
        };
        FichaFamilia f;
        f.plantilla = n;
        f.nombrePlantilla = QLatin1String(name);
        f.tituloDatos = headings.value(f.nombrePlantilla).first;
        f.tituloCaracteristicas = headings.value(f.nombrePlantilla).second;
        f.datos = std::move(datos);
        f.caracteristicas = std::move(car);
        f.tituloDatosFamilia = std::move(tituloFamilia);
        f.datosFamilia = std::move(datosFamilia);
        m.insert(n, f);
    };
    add(1, "in_ficha_piso", kDatosPiso, kVivienda);
    add(2, "in_ficha_casa", datosCasa(), casa());
    add(3, "in_ficha_casa", datosCasa(), casa());
    add(4, "in_ficha_nave", kDatosNave, kNave);
    add(5, "in_ficha_local", kDatosLocal, kLocal);
    add(6, "in_ficha_parking", kDatosParking, kParking);
    add(7, "in_ficha_solar", kDatosSolar, kSolar, QStringLiteral("Datos urbanísticos"), kSolarUrbanismo);
    add(8, "in_ficha_edificio", kDatosEdificio, kEdificio, QStringLiteral("Datos del edificio"), kEdificioDatos);
    add(9, "in_ficha_rustica", kDatosRustica, kRustica, QStringLiteral("Datos de la finca"), kRusticaDatos);
    return m;
}

} // namespace

const FichaFamilia& FichaFamilia::dePlantilla(int plantilla)
{
    static const QMap<int, FichaFamilia> all = build();
    auto it = all.find(plantilla);
    return it == all.end() ? all.first() : *it;
}

int FichaFamilia::plantillaDeFamilia(int familia)
{
    switch (familia) {
    case 2: return 2;
    case 3: return 7;
    case 4: return 4;
    case 5: return 5;
    case 6: return 6;
    default: return 1;
    }
}

const QVector<FichaFamilia::Caracteristica>& FichaFamilia::disponibilidad()
{
    static const QVector<C> d = {
        {"CDISPONIBLE", "SDISPONIBLE", "Disponible"},
        {"CSEPUEDEVISITAR", "SSEPUEDEVISITAR", "Se puede visitar"},
        {"CLLAVES", "SLLAVES", "Llaves en la agencia"},
        {"CPLANOS", "SPLANOS", "Planos disponibles"},
    };
    return d;
}

} // namespace tv::reports
