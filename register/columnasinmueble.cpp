#include "columnasinmueble.h"

#include "inmuebles.h"

namespace tv::registro {

namespace {

using K = ui::ColumnKind;

ui::Column col(const char* nombre, const char* titulo, K tipo = K::Text, const char* lookup = nullptr)
{
    ui::Column c{QString::fromLatin1(nombre), QString::fromUtf8(titulo), tipo};
    if (lookup)
        c.lookup = QString::fromLatin1(lookup);
    c.inGrid = false;
    return c;
}

// A value with its remark box beside it (the S-prefixed column).
ui::Column conNota(const char* nombre, const char* nota, const char* titulo, K tipo)
{
    ui::Column c = col(nombre, titulo, tipo);
    c.remarkColumn = QString::fromLatin1(nota);
    return c;
}

GrupoInmueble grupo(const char* pagina, const char* titulo, int porFila, ui::Columns columnas)
{
    GrupoInmueble g{QString::fromUtf8(pagina), QString::fromUtf8(titulo), porFila, std::move(columnas)};
    for (ui::Column& c : g.columnas)
        c.page = g.pagina;
    return g;
}

struct Marca {
    const char* marca;
    const char* nota;
    const char* titulo;
};

// The feature flags, each with its remark column.
const Marca kCaracteristicas[] = {
    {"CACESIBILIDAD", "SACCESIBILIDAD", "Accesible"},
    {"CAGUA", "SAGUA", "Agua"},
    {"CAIRE", "SAIRE", "Aire acondicionado"},
    {"CAISLANTE", "SAISLANTE", "Aislamiento"},
    {"CALCANTARILLADO", "SALCANTARILLADO", "Alcantarillado"},
    {"CALTILLO", "SALTILLO", "Altillo"},
    {"CALUMBRADO", "SALUMBRADO", "Alumbrado público"},
    {"CMUEBLES", "SMUEBLES", "Amueblado"},
    {"CARMARIOS", "SARMARIOS", "Armarios empotrados"},
    {"CASCENSOR", "SASCENSOR", "Ascensor"},
    {"CASFALTADO", "SASFALTADO", "Asfaltado"},
    {"CCAJAFUERTE", "SCAJAFUERTE", "Caja fuerte"},
    {"CCALEFACCION", "SCALEFACCION", "Calefacción"},
    {"CCARPEXT", "SCARPEXT", "Carpintería exterior"},
    {"CCARPINT", "SCARPINT", "Carpintería interior"},
    {"CCERRADO", "SCERRADO", "Cerrado / vallado"},
    {"CCHIMENEA", "SCHIMENEA", "Chimenea"},
    {"CCLASENEGOCIO", "SCLASENEGOCIO", "Clase de negocio"},
    {"CCOCINA", "SCOCINA", "Cocina equipada"},
    {"CCOLUMNAS", "SCOLUMNAS", "Columnas"},
    {"CCOMEDOR", "SCOMEDOR", "Comedor"},
    {"CDISPONIBLE", "SDISPONIBLE", "Disponible"},
    {"CDIVISIBLE", "SDIVISIBLE", "Divisible"},
    {"CESCAPARATE", "SESCAPARATE", "Escaparate"},
    {"CESQUINA", "SESQUINA", "Esquina"},
    {"CEXTERIOR", nullptr, "Exterior"},
    {"CGARAJE", "SGARAJE", "Garaje"},
    {"CGAS", "SGAS", "Gas"},
    {"CGASTOSCOMUNIDAD", "SGASTOSCOMUNIDAD", "Gastos de comunidad"},
    {"CADSL", "SADSL", "Internet / ADSL"},
    {"CJARDIN", "SJARDIN", "Jardín"},
    {"CLAVADERO", "SLAVADERO", "Lavadero"},
    {"CLLAVES", "SLLAVES", "Llaves en la agencia"},
    {"CLUZ", "SLUZ", "Luz"},
    {"CMUELLE", "SMUELLE", "Muelle de carga"},
    {"COFICINA", "SOFICINA", "Oficina"},
    {"CORIENTACION", "SORIENTACION", "Orientación"},
    {"CPINTURA", "SPINTURA", "Pintura"},
    {"CPISCINA", "SPISCINA", "Piscina"},
    {"CPLANOS", "SPLANOS", "Planos"},
    {"CPLANTABAJA", "SPLANTABAJA", "Planta baja"},
    {"CPUERTABLINDADA", "SPUERTABLINDADA", "Puerta blindada"},
    {"CINTRANET", "SINTRANET", "Red de datos"},
    {"CSALIDAEMERGENCIA", "SSALIDAEMERGENCIA", "Salida de emergencia"},
    {"CSALIDAHUMOS", "SSALIDAHUMOS", "Salida de humos"},
    {"CSEPUEDEVISITAR", "SSEPUEDEVISITAR", "Se puede visitar"},
    {"CSEGURIDAD", "SSEGURIDAD", "Seguridad"},
    {"CSISTEMAANT", nullptr, "Sistema antiincendios"},
    {"CSISTEMASEGURIDA", "SSISTEMASEGURIDA", "Sistema de seguridad"},
    {"CSOLEADO", "SSOLEADO", "Soleado"},
    {"CSUBTERRANEO", "SSUBTERRANEO", "Subterráneo"},
    {"CSUELO", "SSUELO", "Suelo"},
    {"CSUPUEDEVISITAR", nullptr, "Visita concertada"},
    {"CTELEFONO", "STELEFONO", "Teléfono"},
    {"CTERRAZA", "STERRAZA", "Terraza"},
    {"CTRASTERO", "STRASTERO", "Trastero"},
    {"CURBANIZADO", "SURBANIZADO", "Urbanizado"},
    {"CVIDRIOSDOBLES", "SVIDRIOSDOBLES", "Doble acristalamiento"},
    {"CVIGILANTE", "SVIGILANTE", "Vigilante"},
    {"CVISTAS", "SVISTA", "Vistas"},
};

QList<GrupoInmueble> definir()
{
    QList<GrupoInmueble> g;

    ui::Column codigo = col("CODIGO", "Expediente");
    codigo.insertOnly = true;
    codigo.normaliser = rellenarExpediente;
    codigo.inGrid = true;
    codigo.width = 7;
    ui::Column tipo = col("CODTIPOINMUEBLE", "Tipo de inmueble", K::Lookup, "tipoinmueble");
    tipo.inGrid = true;
    tipo.width = 14;
    ui::Column operacion = col("CODTIPOOPERACION", "Operación", K::Lookup, "tipooperacion");
    operacion.inGrid = true;
    operacion.width = 12;
    g.append(grupo(kPaginaGeneral, "Inmueble", 2,
                   {codigo, col("FECHAALTA", "Fecha de alta", K::Date), tipo, operacion,
                    col("CODESTADO", "Estado", K::Lookup, "estados"),
                    col("CODPROMOCION", "Promoción", K::Lookup,
                        "SELECT CODIGO, DESCRIPCION FROM PROMOCIONES ORDER BY DESCRIPCION"),
                    col("EXCLUSIVA", "Exclusiva", K::Flag), col("CNUEVA_CONSTRUCCION", "Obra nueva", K::Flag),
                    col("CVPO", "Protección oficial (VPO)", K::Flag),
                    col("FECHA_MODIFICA", "Última modificación", K::Date)}));

    ui::Column via = col("NOMBREVIA", "Calle");
    via.inGrid = true;
    via.width = 22;
    ui::Column municipio = col("MUNICIPIO", "Población");
    municipio.inGrid = true;
    municipio.width = 14;
    ui::Column zona = col("CODTIPOZONA", "Zona", K::Lookup, "zonas");
    zona.inGrid = true;
    zona.width = 12;
    g.append(grupo(kPaginaGeneral, "Situación", 2,
                   {col("TIPOVIA", "Tipo de vía"), via, col("NUMERO", "Número"), col("BLOQUE", "Bloque"),
                    col("ESCALERA", "Escalera"), col("PLANTA", "Planta"), col("PUERTA", "Puerta"),
                    col("CP", "Código postal"), municipio, col("PROVINCIA", "Provincia"), zona,
                    col("NOMBRE_APARTAMENTO", "Nombre del apartamento"),
                    col("GOOGLE_MAPS_MANUAL", "Situar en el mapa a mano", K::Flag),
                    col("LATITUDE", "Latitud", K::Number), col("LONGITUDE", "Longitud", K::Number),
                    col("UTM", "UTM")}));

    ui::Column propietario = col("CODPROPIETARIO", "Propietario", K::Integer);
    propietario.searchable = false;
    ui::Column propietario2 = col("CODPROPIETARIO2", "Segundo propietario", K::Integer);
    propietario2.searchable = false;
    g.append(grupo(kPaginaGeneral, "Propietarios y agentes", 1,
                   {propietario, col("TELEFONO", "Teléfono"), propietario2, col("TELEFONO2", "Teléfono"),
                    col("CODCAPTADOR", "Captador", K::Lookup, "agentes"),
                    col("CODAGENTE", "Agente", K::Lookup, "agentes"),
                    col("CODAGENTEEXTERNO", "Agente externo", K::Lookup, "agentes"),
                    col("CODAGENTEEXTERNO2", "Segundo agente externo", K::Lookup, "agentes"),
                    col("CODPERITO", "Tasador", K::Lookup, "agentes"),
                    col("CODORIGEN", "Origen", K::Lookup, "origenes")}));

    ui::Column precio = col("EUROIMPORTE", "Precio", K::Money);
    precio.inGrid = true;
    precio.width = 11;
    g.append(grupo(kPaginaGeneral, "Precio y honorarios", 2,
                   {precio, col("SUBIR_PRECIO", "Publicar el precio", K::Flag),
                    col("EUROMINIMO", "Precio mínimo", K::Money), col("EUROMAXIMO", "Precio máximo", K::Money),
                    col("HONORARIO_VENTA", "Honorarios fijos", K::Money),
                    col("HONORARIO_PORCENTAJE", "% honorarios", K::Number),
                    col("HONORARIO_SOBRE", "Base de honorarios", K::Money),
                    col("HONORARIO_TOTAL", "Pactados", K::Money),
                    col("GASTOS", "Gastos"), col("SCOMUNIDAD", "Gastos de comunidad")}));

    g.append(grupo(kPaginaSuperficies, "Superficies", 1,
                   {conNota("CSUPER1", "SSUPER1", "Superficie construida (m²)", K::Number),
                    conNota("CSUPERF1", "SSUPERF1", "Superficie útil (m²)", K::Number),
                    conNota("CSUPER2", "SSUPER2", "Superficie 2 (m²)", K::Number),
                    conNota("CSUPER3", "SSUPER3", "Superficie 3 (m²)", K::Number),
                    conNota("CSUPER4", "SSUPER4", "Superficie 4 (m²)", K::Number),
                    conNota("CSUPER5", "SSUPER5", "Superficie 5 (m²)", K::Number),
                    conNota("CSUPSOLAR", "SSUPSOLAR", "Superficie de parcela (m²)", K::Number),
                    col("CSUPERSOLAR", "Superficie del solar"),
                    conNota("CALTURA", "SALTURA", "Altura (m)", K::Number),
                    conNota("CALTURATECHO", "SALTURATECHO", "Altura de techo (m)", K::Number),
                    conNota("CALTO", "SALTO", "Alto (m)", K::Number),
                    conNota("CANCHO", "SANCHO", "Ancho / fachada (m)", K::Number),
                    conNota("CFONDO", "SFONDO", "Fondo (m)", K::Number)}));
    g.append(grupo(kPaginaSuperficies, "Distribución", 1,
                   {conNota("CHABDOBLES", "SHABDOBLES", "Dormitorios dobles", K::Integer),
                    conNota("CHABSENCILLAS", "SHABSENCILLAS", "Dormitorios sencillos", K::Integer),
                    conNota("CNUMSUITE", "SNUMSUITE", "Suites", K::Integer),
                    conNota("CNUMBANOS", "SNUMBANOS", "Baños", K::Integer),
                    conNota("CNUMASEOS", "SNUMASEOS", "Aseos", K::Integer),
                    conNota("NASEOS", "SASEOS", "Otros aseos", K::Integer),
                    conNota("CPLAZAS", "SPLAZAS", "Plazas de garaje", K::Integer),
                    conNota("CPLANTAS", "SPLANTAS", "Varias plantas", K::Flag),
                    conNota("CANOCONSTRUCCION", "SANOCONSTRUCCION", "Año de construcción", K::Flag),
                    conNota("CPOTENCIA", "SPOTENCIA", "Potencia eléctrica", K::Flag)}));

    ui::Columns marcas;
    for (const Marca& m : kCaracteristicas) {
        ui::Column c = col(m.marca, m.titulo, K::Flag);
        if (m.nota)
            c.remarkColumn = QString::fromLatin1(m.nota);
        marcas.append(c);
    }
    g.append(grupo(kPaginaCaracteristicas, "Características", 3, marcas));
    g.append(grupo(kPaginaCaracteristicas, "Otros datos", 1, {col("SOTROS", "Otros", K::Memo)}));

    g.append(grupo(kPaginaSolar, "Urbanismo", 2,
                   {col("SOLAR_CLASESUELO", "Clase de suelo"), col("SOLAR_USOS", "Usos"),
                    col("SOLAR_CLAVE", "Clave urbanística"), col("SOLAR_POLIGONO", "Polígono"),
                    col("SOLAR_PARCELA", "Parcela"), col("SOLAR_PLANACTUAL", "Planeamiento actual"),
                    col("SOLAR_PLANDESARROLLO", "Planeamiento de desarrollo"),
                    col("SOLAR_SISTEMA", "Sistema de actuación"), col("SOLAR_PLAZOS", "Plazos"),
                    col("SOLAR_PARCELAMINIMA", "Parcela mínima (m²)", K::Number),
                    col("SOLAR_DENSIDAD", "Densidad (viviendas/ha)", K::Number),
                    col("SOLAR_TIPOLOGIA", "Tipología"),
                    col("SOLAR_NUMEROVIVIENDAS", "Número de viviendas", K::Integer),
                    col("SOLAR_TIPOLOGIAVIVIENDA", "Tipología de vivienda"),
                    col("SOLAR_COEFICIENTE", "Coeficiente de edificabilidad", K::Number),
                    col("SOLAR_OCUPACION", "Ocupación (%)", K::Number),
                    col("SOLAR_URBANIZADO", "Urbanización"),
                    col("SOLAR_GASTOSURBANIZACION", "Gastos de urbanización", K::Money),
                    col("SOLAR_AFECCIONES", "Afecciones"), col("SOLAR_CARGAS", "Cargas"),
                    col("SOLAR_CESIONES", "Cesiones")}));

    g.append(grupo(kPaginaEdificio, "Edificio", 2,
                   {col("EDIFICIO_SUPERRASANTESOBRE", "Superficie sobre rasante (m²)", K::Number),
                    col("EDIFICIO_SUPERRASANTEBAJO", "Superficie bajo rasante (m²)", K::Number),
                    col("EDIFICIO_PLANTASSOBRERESANTA", "Plantas sobre rasante", K::Integer),
                    col("EDIFICIO_PLANTASBAJORASANTE", "Plantas bajo rasante", K::Integer),
                    col("EDIFICIO_NUMVIVIENDAS", "Número de viviendas", K::Integer),
                    col("EDIFICIO_PLAZASPARKING", "Plazas de parking", K::Integer),
                    col("EDIFICIO_ANOCONSTRUCCION", "Año de construcción", K::Integer),
                    col("EDIFICIO_REFORMAS", "Reformas"),
                    col("EDIFICIO_ALTURAMAXIMA", "Altura máxima (m)", K::Number),
                    col("EDIFICIO_OCUPACION", "Ocupación (%)", K::Number),
                    col("EDIFICIO_USOACTUAL", "Uso actual"), col("EDIFICIO_USOSPOSIBLES", "Usos posibles"),
                    col("EDIFICIO_RENTABILIDAD", "Rentabilidad (%)", K::Number),
                    col("EDIFICIO_EXPLOTADOR", "Explotador"), col("EDIFICIO_CONTRATO", "Contrato"),
                    col("EDIFICIO_ANOSCONTRATO", "Años de contrato", K::Integer),
                    col("EDIFICIO_CARGAS", "Cargas"), col("EDIFICIO_AFECCIONES", "Afecciones")}));

    g.append(grupo(kPaginaRustica, "Finca rústica", 2,
                   {col("RUSTICA_CULTIVO", "Tipo de cultivo"), col("RUSTICA_ARBOLADO", "Tipo de arbolado"),
                    col("RUSTICA_ACCESO", "Acceso"), col("RUSTICA_CIERRE", "Tipo de cierre"),
                    col("RUSTICA_CAZA", "Variedad de caza"), col("RUSTICA_LUZ", "Luz"),
                    col("RUSTICA_CONSTRUCCIONES", "Construcciones"),
                    col("RUSTICA_PRECIOHEC", "Precio por hectárea", K::Money)}));

    g.append(grupo(kPaginaRegistro, "Registro de la propiedad", 2,
                   {col("REGISTRADOEN", "Registrado en"), col("NUMREGISTRO", "Número de registro"),
                    col("TOMO", "Tomo"), col("LIBRO", "Libro"), col("FOLIO", "Folio"), col("FINCA", "Finca"),
                    col("INSCRIPCION", "Inscripción"), col("REFCATASTRAL", "Referencia catastral"),
                    col("PROPREGISTRALES", "Propietarios registrales"), col("TITULO", "Título"),
                    col("CARGAS", "Cargas"), col("CEDULA", "Cédula de habitabilidad")}));
    g.append(grupo(kPaginaRegistro, "Certificado energético", 3,
                   {col("ENERGETICA", "Calificación"), col("CONSUMO", "Consumo (kWh/m² año)"),
                    col("EMISIONES", "Emisiones (kg CO₂/m² año)")}));

    g.append(grupo(kPaginaObservaciones, "Observaciones", 1,
                   {col("OBSERVACIONES_TEXTO", "Observaciones", K::Memo),
                    col("OBSERVA_INTERNAS_TEXTO", "Observaciones internas", K::Memo)}));

    g.append(grupo(kPaginaPublicacion, "Publicación", 2,
                   {col("PUBLICAR", "Publicar en Internet", K::Flag), col("DESTACADO", "Destacado", K::Flag),
                    col("SUBIR_INTERNET", "En la web de la agencia", K::Flag),
                    col("CARTELES", "Imprimir carteles", K::Flag), col("YOUTUBE", "Video (Youtube)"),
                    col("VIRTUAL", "Visita virtual"), col("TURISTICO_ESTADO", "Licencia turística"),
                    col("TURISTICO_HUT", "Número de licencia (HUT)")}));
    return g;
}

} // namespace

const QList<GrupoInmueble>& gruposInmueble()
{
    static const QList<GrupoInmueble> g = definir();
    return g;
}

const ui::Columns& columnasInmueble()
{
    static const ui::Columns c = [] {
        ui::Columns l;
        for (const GrupoInmueble& g : gruposInmueble())
            l += g.columnas;
        // The joined descriptions the row keeps for lists.
        for (const char* n : {"DESTIPOINMUEBLE", "DESTIPOOPERACION", "DESZONA"}) {
            ui::Column d = col(n, n);
            d.searchable = false;
            l.append(d);
        }
        ui::Column nombre = col("NOMBREPROPIETARIO", "Propietario");
        nombre.inGrid = true;
        nombre.width = 20;
        nombre.searchable = false;
        l.append(nombre);
        return l;
    }();
    return c;
}

const QList<IdiomaCartel>& idiomasCartel()
{
    static const QList<IdiomaCartel> l = {
        {QStringLiteral("Castellano"), "CARTELES_CABECERA", "CARTELES_INFORMACION", "CARTELES_PIE"},
        {QStringLiteral("Catalán"), "CARTELES_CABECERACAT", "CARTELES_INFORMACATALAN", "CARTELES_PIECAT"},
        {QStringLiteral("Inglés"), "CARTELES_CABECERAENG", "CARTELES_INFORMAINGLES", "CARTELES_PIEENG"},
        {QStringLiteral("Francés"), "CARTELES_CABECERAFRAN", "CARTELES_INFORMAFRANCES", "CARTELES_PIEFRAN"},
        {QStringLiteral("Alemán"), "CARTELES_CABECERAALE", "CARTELES_INFORMAALE", "CARTELES_PIEALE"},
    };
    return l;
}

const QStringList& columnasLista()
{
    static const QStringList l = {"CODIGO",    "CODTIPOINMUEBLE", "CODTIPOOPERACION", "NOMBREVIA",
                                  "MUNICIPIO", "CODTIPOZONA",     "EUROIMPORTE",      "NOMBREPROPIETARIO"};
    return l;
}

} // namespace tv::registro
