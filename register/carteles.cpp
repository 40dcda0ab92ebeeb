#include "carteles.h"

#include "dataset.h"
#include "datoshelpers.h"
#include "dm.h"
#include "fichafamilia.h"
#include "reportformat.h"

#include <QHash>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

namespace tv::registro {

namespace {

// One item of a poster text.
struct Elemento {
    enum class Clase {
        Cuenta,   // the columns added, then the singular unit for 1, the plural otherwise
        Medida,   // the first non-zero column, then its unit
        Marca,    // the word when the flag is "S"
        Anyo,     // the label and the year (when the flag, if any, is "S")
        Etiqueta, // the label and the value, then what follows it
    };
    Clase clase;
    const char* texto;  // unit, word or label
    const char* texto2; // plural unit, or what follows a label's value
    std::array<const char*, 3> columnas;
    const char* marca; // the flag that must be "S", if any
};
using C = Elemento::Clase;

constexpr Elemento cuenta(const char* singular, const char* plural, const char* a, const char* b = nullptr,
                          const char* c = nullptr)
{
    return {C::Cuenta, singular, plural, {a, b, c}, nullptr};
}
// A measure read from the first of the columns that holds one.
constexpr Elemento medida(const char* unidad, const char* columna, const char* otra = nullptr)
{
    return {C::Medida, unidad, nullptr, {columna, otra, nullptr}, nullptr};
}
constexpr Elemento marca(const char* palabra, const char* columna)
{
    return {C::Marca, palabra, nullptr, {nullptr, nullptr, nullptr}, columna};
}
constexpr Elemento anyo(const char* columna, const char* bandera)
{
    return {C::Anyo, "AÑO DE CONSTRUCCIÓN ", nullptr, {columna, nullptr, nullptr}, bandera};
}
constexpr Elemento etiqueta(const char* rotulo, const char* columna, const char* detras = nullptr)
{
    return {C::Etiqueta, rotulo, detras, {columna, nullptr, nullptr}, nullptr};
}

const Elemento kDormitorios =
    cuenta(" DORMITORIO,", " DORMITORIOS,", "CHABDOBLES", "CHABSENCILLAS", "CNUMSUITE");
const Elemento kBanos = cuenta(" CUARTO DE BAÑO,", " CUARTOS DE BAÑO,", "CNUMBANOS");
const Elemento kAseos = cuenta(" ASEO,", " ASEOS,", "CNUMASEOS");
const Elemento kPlazas = cuenta(" PLAZA,", " PLAZAS,", "CPLAZAS");
const Elemento kConstruidos = medida(" M2 CONSTRUIDOS,", "CSUPER1");
// The portal feeds read CSUPER2 as the useful surface; older rows keep it in CSUPERF1.
const Elemento kUtiles = medida(" M2 UTILES,", "CSUPER2", "CSUPERF1");
const Elemento kParcela = medida(" M2 SUPERFICIE DE PARCELA,", "CSUPSOLAR");
const Elemento kAncho = medida(" M2 DE ANCHO,", "CANCHO");
const Elemento kAlto = medida(" M2 DE ALTO,", "CALTO");
const Elemento kFondo = medida(" M2 DE FONDO,", "CFONDO");
const Elemento kAscensor = marca("ASCENSOR,", "CASCENSOR");
const Elemento kCalefaccion = marca("CALEFACCIÓN ", "CCALEFACCION");
const Elemento kTrastero = marca("TRASTERO ", "CTRASTERO");
const Elemento kJardin = marca("JARDIN ", "CJARDIN");
const Elemento kPiscina = marca("PISCINA ", "CPISCINA");
const Elemento kGaraje = marca("GARAJE ", "CGARAJE");
const Elemento kOficina = marca("OFICINA ", "COFICINA");
const Elemento kMuelle = marca("MUELLE ", "CMUELLE");
const Elemento kEmergencia = marca("SALIDA EMERGENCIA ", "CSALIDAEMERGENCIA");
const Elemento kHumos = marca("SALIDA DE HUMOS ", "CSALIDAHUMOS");
const Elemento kSubterraneo = marca("SUBTERRANEO ", "CSUBTERRANEO");
const Elemento kCerrado = marca("CERRADO ", "CCERRADO");
// The year typed beside its tick box.
const Elemento kAnyo = anyo("SANOCONSTRUCCION", "CANOCONSTRUCCION");

const std::vector<Elemento> kPiso = {
    kDormitorios, kBanos,       kAseos,  kConstruidos, kUtiles,  medida(" M2 DE PATIO,", "CSUPER3"),
    kAscensor,    kCalefaccion, kGaraje, kTrastero,    kPiscina, kJardin,
    kAnyo,
};

const std::vector<Elemento> kCasa = {
    kDormitorios, kBanos,  kAseos,    kConstruidos, kUtiles, kParcela, medida(" M2 DE PATIO,", "CSUPER3"),
    kCalefaccion, kGaraje, kTrastero, kPiscina,     kJardin, kAnyo,
};

const std::vector<Elemento> kNave = {
    kConstruidos,
    kParcela,
    medida(" M2 POR PLANTA,", "CSUPER2"),
    medida(" M2 DE ALTURA,", "CSUPER3"),
    kAncho,
    kFondo,
    medida(" M2 DE PATIO,", "CSUPER4"),
    kBanos,
    kAseos,
    kOficina,
    kMuelle,
    kEmergencia,
    kHumos,
    kCerrado,
    kAnyo,
};

const std::vector<Elemento> kLocal = {
    kConstruidos,
    kUtiles,
    medida(" M2 SUPERFICIE TOTAL,", "CSUPSOLAR"),
    medida(" M2 ESCAPARATE,", "SESCAPARATE"),
    kAncho,
    kAlto,
    kFondo,
    kBanos,
    kAseos,
    kHumos,
    kEmergencia,
    kOficina,
    kCalefaccion,
    kAnyo,
};

const std::vector<Elemento> kParking = {
    kPlazas, kConstruidos, kAncho, kAlto, kFondo, kSubterraneo, kCerrado, kAscensor,
};

const std::vector<Elemento> kSolar = {
    medida(" M2 SUPERFICIE TOTAL,", "CSUPER1"),
    medida(" M2 SUPERFICIE DE PARCELA,", "CSUPER2"),
    medida(" M2 DE TECHO,", "CSUPER3"),
    medida(" M2 DE ANCHO,", "CSUPER4"),
    medida(" M2 OCUPACIÓN DE PARCELA,", "SOLAR_OCUPACION"),
    cuenta(" VIVIENDA,", " VIVIENDAS,", "SOLAR_NUMEROVIVIENDAS"),
    kCerrado,
};

const std::vector<Elemento> kEdificio = {
    kConstruidos,
    kParcela,
    medida(" M2 SOBRE RASANTE,", "EDIFICIO_SUPERRASANTESOBRE"),
    medida(" M2 BAJO RASANTE,", "EDIFICIO_SUPERRASANTEBAJO"),
    medida(" M2 OCUPACIÓN DE PARCELA,", "EDIFICIO_OCUPACION"),
    medida(" M2 DE ALTURA,", "EDIFICIO_ALTURAMAXIMA"),
    cuenta(" PLANTA SOBRE RASANTE,", " PLANTAS SOBRE RASANTE,", "EDIFICIO_PLANTASSOBRERESANTA"),
    cuenta(" PLANTA BAJO RASANTE,", " PLANTAS BAJO RASANTE,", "EDIFICIO_PLANTASBAJORASANTE"),
    cuenta(" VIVIENDA,", " VIVIENDAS,", "EDIFICIO_NUMVIVIENDAS"),
    cuenta(" PLAZA DE PARKING,", " PLAZAS DE PARKING,", "EDIFICIO_PLAZASPARKING"),
    kAscensor,
    kCalefaccion,
    kGaraje,
    kTrastero,
    kPiscina,
    kJardin,
    kEmergencia,
    anyo("EDIFICIO_ANOCONSTRUCCION", nullptr),
};

const std::vector<Elemento> kRustica = {
    etiqueta("SUPERFICIE TOTAL: ", "CSUPER1", " M2,"),
    etiqueta("TIPO DE ARBOLADO: ", "RUSTICA_ARBOLADO", ","),
    etiqueta("ACCESO: ", "RUSTICA_ACCESO", ","),
    etiqueta("TIPO DE CIERRE: ", "RUSTICA_CIERRE", ","),
    etiqueta("VARIEDAD DE CAZA: ", "RUSTICA_CAZA", ","),
    etiqueta("TIPO DE CULTIVO: ", "RUSTICA_CULTIVO", ","),
    etiqueta("CONSTRUCCIONES: ", "RUSTICA_CONSTRUCCIONES", ","),
    etiqueta("LUZ: ", "RUSTICA_LUZ", ","),
    kPiscina,
};

// Indexed by the template number; 0 and anything unknown read as a flat.
const std::array<const std::vector<Elemento>*, 10> kPlantillas = {
    &kPiso, &kPiso, &kCasa, &kCasa, &kNave, &kLocal, &kParking, &kSolar, &kEdificio, &kRustica,
};

const std::vector<Elemento>& elementosDe(int plantilla)
{
    return plantilla > 0 && plantilla < int(kPlantillas.size()) ? *kPlantillas[size_t(plantilla)] : kPiso;
}

bool esNulo(const QVariant& v)
{
    return !v.isValid() || v.isNull();
}

// A number held as a number or as text ("4,5" reads as 4.5).
std::optional<double> numeroDe(const QVariant& v)
{
    if (esNulo(v))
        return std::nullopt;
    double d = 0;
    bool ok = true;
    switch (v.typeId()) {
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        d = v.toDouble();
        break;
    default:
        d = v.toString().trimmed().replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&ok);
    }
    if (!ok || !std::isfinite(d))
        return std::nullopt;
    return d;
}

bool esNumero(const QVariant& v)
{
    switch (v.typeId()) {
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return true;
    default:
        return false;
    }
}

bool marcada(const QVariant& v)
{
    return !esNulo(v) && v.toString().trimmed() == QLatin1String("S");
}

// A surface or count as written on a poster; empty for nothing worth writing.
QString cifra(const QVariant& v)
{
    const auto d = numeroDe(v);
    if (!d || *d <= 0)
        return {};
    const QString s = reports::numero(*d, 2);
    return s == QLatin1String("0") ? QString() : s;
}

// A value written after a label: numbers as figures, texts trimmed; zero and
// empty give nothing.
QString valorTexto(const QVariant& v)
{
    if (esNulo(v))
        return {};
    if (esNumero(v))
        return cifra(v);
    const QString t = v.toString().trimmed();
    const auto d = numeroDe(t);
    return d && *d == 0 ? QString() : t;
}

QString anyoTexto(const QVariant& v)
{
    if (esNulo(v))
        return {};
    if (esNumero(v)) {
        const qlonglong y = qRound64(v.toDouble());
        return y > 0 ? QString::number(y) : QString();
    }
    return valorTexto(v);
}

QString elemento(const Elemento& e, const ValorColumna& valor)
{
    auto col = [&valor](const char* c) { return valor(QString::fromLatin1(c)); };
    switch (e.clase) {
    case C::Cuenta: {
        qlonglong total = 0;
        for (const char* c : e.columnas)
            if (c)
                if (const auto d = numeroDe(col(c)))
                    total += qRound64(*d);
        if (total <= 0)
            return {};
        return QString::number(total) + QString::fromUtf8(total == 1 ? e.texto : e.texto2);
    }
    case C::Medida:
        for (const char* c : e.columnas) {
            if (!c)
                continue;
            const QString n = cifra(col(c));
            if (!n.isEmpty())
                return n + QString::fromUtf8(e.texto);
        }
        return {};
    case C::Marca:
        return marcada(col(e.marca)) ? QString::fromUtf8(e.texto) : QString();
    case C::Anyo: {
        if (e.marca && !marcada(col(e.marca)))
            return {};
        const QString y = anyoTexto(col(e.columnas[0]));
        return y.isEmpty() ? y : QString::fromUtf8(e.texto) + y;
    }
    case C::Etiqueta: {
        const QString v = valorTexto(col(e.columnas[0]));
        if (v.isEmpty())
            return v;
        return QString::fromUtf8(e.texto) + v + (e.texto2 ? QString::fromUtf8(e.texto2) : QString());
    }
    }
    return {};
}

// The families of property types, each read once.
class Familias {
public:
    explicit Familias(Tdm& dm)
        : mTipo(dm.datos, dm.Transacion, QString::fromLatin1(kSqlFamiliaTipo)),
          mFamilia(dm.datos, dm.Transacion, QString::fromLatin1(kSqlPlantillaFamilia))
    {
    }

    int plantilla(const QVariant& tipo)
    {
        const auto codigo = numeroDe(tipo);
        if (!codigo)
            return 1;
        const int clave = int(qRound64(*codigo));
        auto it = mLeidas.constFind(clave);
        if (it != mLeidas.constEnd())
            return *it;
        const int familia = primerEntero(mTipo, clave);
        int plantilla = familia > 0 ? primerEntero(mFamilia, familia) : 0;
        if (plantilla < 1 || plantilla >= int(kPlantillas.size()))
            plantilla = reports::FichaFamilia::plantillaDeFamilia(familia);
        mLeidas.insert(clave, plantilla);
        return plantilla;
    }

private:
    static int primerEntero(Query& q, int codigo)
    {
        q.paramByName(QStringLiteral("CODIGO")).setAsInteger(codigo);
        q.open();
        const int n = q.eof() || q.field(0).isNull() ? 0 : q.field(0).asInteger();
        q.close();
        return n;
    }

    Query mTipo;
    Query mFamilia;
    QHash<int, int> mLeidas;
};

// The type and every column the texts read, of one property or of the
// active ones.
QString consultaCartel(const QString& condicion)
{
    return QStringLiteral("SELECT CODIGO, CODTIPOINMUEBLE, CARTELES_INFORMACION, ") +
           columnasCartel().join(QStringLiteral(", ")) + QStringLiteral(" FROM INMUEBLES WHERE ") + condicion;
}

// Reads the query's current row by column name, through an index made once.
class FilaConsulta {
public:
    explicit FilaConsulta(const Query& q) : mQ(q)
    {
        const QStringList nombres = q.fieldNames();
        for (int i = 0; i < nombres.size(); ++i)
            mIndice.insert(nombres.at(i), i);
    }
    QVariant operator()(const QString& columna) const
    {
        const int i = mIndice.value(columna, -1);
        return i < 0 ? QVariant() : mQ.field(i).value();
    }

private:
    const Query& mQ;
    QHash<QString, int> mIndice;
};

DatabaseError noExiste(const QString& codigo)
{
    return DatabaseError(QStringLiteral("No existe el inmueble %1.").arg(codigo));
}

// Runs a unit of work inside a savepoint of the shared transaction: it lands
// whole or is taken back whole.
class PuntoDeGuardado {
public:
    explicit PuntoDeGuardado(Tdm& dm) : mDm(dm)
    {
        Query::execute(mDm.datos, mDm.Transacion, QStringLiteral("SAVEPOINT TV_CARTELES"));
    }
    ~PuntoDeGuardado()
    {
        if (mHecho)
            return;
        try {
            Query::execute(mDm.datos, mDm.Transacion, QStringLiteral("ROLLBACK TO SAVEPOINT TV_CARTELES"));
            Query::execute(mDm.datos, mDm.Transacion, QStringLiteral("RELEASE SAVEPOINT TV_CARTELES"));
        } catch (const DatabaseError&) {
            // The failure that brought us here is the one worth reporting.
        }
    }
    PuntoDeGuardado(const PuntoDeGuardado&) = delete;
    PuntoDeGuardado& operator=(const PuntoDeGuardado&) = delete;
    void confirmar()
    {
        Query::execute(mDm.datos, mDm.Transacion, QStringLiteral("RELEASE SAVEPOINT TV_CARTELES"));
        mHecho = true;
    }

private:
    Tdm& mDm;
    bool mHecho = false;
};

} // namespace

QString textoCartel(int plantilla, const ValorColumna& valor)
{
    QString texto;
    for (const Elemento& e : elementosDe(plantilla)) {
        const QString parte = elemento(e, valor);
        if (parte.isEmpty())
            continue;
        if (!texto.isEmpty() && !texto.back().isSpace())
            texto += QLatin1Char(' ');
        texto += parte;
    }
    // A poster line is one line: a break inside a typed value becomes a blank.
    static const QRegularExpression saltos(
        QStringLiteral("[ \\t]*(?:\\r\\n|[\\r\\n\\x{2028}\\x{2029}])+[ \\t]*"));
    texto.replace(saltos, QStringLiteral(" "));
    return texto;
}

QString textoCartel(int plantilla, const QVariantMap& valores)
{
    return textoCartel(plantilla, [&valores](const QString& columna) { return valores.value(columna); });
}

QString textoCartel(Tdm& dm, DataSet& ds)
{
    auto valor = [&ds](const QString& columna) {
        const int i = ds.fieldIndex(columna);
        return i < 0 ? QVariant() : ds.field(i).value();
    };
    Familias familias(dm);
    return textoCartel(familias.plantilla(valor(QStringLiteral("CODTIPOINMUEBLE"))), valor);
}

const QStringList& columnasCartel()
{
    static const QStringList columnas = [] {
        QStringList c;
        auto anadir = [&c](const char* nombre) {
            if (nombre && !c.contains(QLatin1String(nombre)))
                c.append(QString::fromLatin1(nombre));
        };
        for (const auto* lista : kPlantillas)
            for (const Elemento& e : *lista) {
                for (const char* n : e.columnas)
                    anadir(n);
                anadir(e.marca);
            }
        return c;
    }();
    return columnas;
}

int plantillaCartel(Tdm& dm, const QVariant& tipoInmueble)
{
    return Familias(dm).plantilla(tipoInmueble);
}

QString generarCartel(Tdm& dm, const QString& codigoInmueble)
{
    const QString codigo = reports::normalizarCodigo(codigoInmueble);
    Query q(dm.datos, dm.Transacion, consultaCartel(QStringLiteral("CODIGO = :CODIGO")));
    q.paramByName(QStringLiteral("CODIGO")).setAsString(codigo);
    q.open();
    if (q.eof())
        throw noExiste(codigo);
    Familias familias(dm);
    const FilaConsulta fila(q);
    const QString texto =
        textoCartel(familias.plantilla(fila(QStringLiteral("CODTIPOINMUEBLE"))), std::cref(fila));
    q.close();

    Query guardar(dm.datos, dm.Transacion, QString::fromLatin1(kSqlGuardarCartel));
    guardar.paramByName(QStringLiteral("INFORMACION")).setAsString(texto);
    guardar.paramByName(QStringLiteral("CODIGO")).setAsString(codigo);
    guardar.exec();
    dm.Transacion.commitRetaining();
    return texto;
}

int generarCarteles(Tdm& dm, const ProgresoCarteles& progreso)
{
    const QString activos = QStringLiteral("ACTIVADO = 'S'");
    int total = Query::scalar(dm.datos, dm.Transacion,
                              QStringLiteral("SELECT COUNT(*) FROM INMUEBLES WHERE ") + activos)
                    .toInt();
    // Often enough for a progress bar, rarely enough not to slow the run.
    const int paso = std::max(1, total / 200);
    auto seguir = [&](int hechos) { return !progreso || progreso(hechos, std::max(total, hechos)); };

    PuntoDeGuardado punto(dm);
    if (!seguir(0))
        return 0;
    Familias familias(dm);
    Query guardar(dm.datos, dm.Transacion, QString::fromLatin1(kSqlGuardarCartel));
    Param informacion = guardar.paramByName(QStringLiteral("INFORMACION"));
    Param codigo = guardar.paramByName(QStringLiteral("CODIGO"));

    Query q(dm.datos, dm.Transacion, consultaCartel(activos));
    q.open();
    const FilaConsulta fila(q);
    const ValorColumna valor = std::cref(fila);
    const int iCodigo = q.fieldIndex(QStringLiteral("CODIGO"));
    const int iTipo = q.fieldIndex(QStringLiteral("CODTIPOINMUEBLE"));
    const int iTexto = q.fieldIndex(QStringLiteral("CARTELES_INFORMACION"));
    int hechos = 0;
    for (; !q.eof(); q.next()) {
        const QString texto = textoCartel(familias.plantilla(q.field(iTipo).value()), valor);
        // Rewriting an unchanged text would only leave a record version
        // behind for every property, to be collected on the next pass.
        const Field anterior = q.field(iTexto);
        if (anterior.isNull() || anterior.asString() != texto) {
            informacion.setAsString(texto);
            codigo.setAsString(q.field(iCodigo).asString());
            guardar.exec();
        }
        ++hechos;
        if (hechos % paso == 0 && !seguir(hechos))
            return 0;
    }
    q.close();
    total = std::max(total, hechos);
    if (hechos % paso != 0 && !seguir(hechos))
        return 0;
    punto.confirmar();
    dm.Transacion.commitRetaining();
    return hechos;
}

TextosRusos leerTextosRusos(Tdm& dm, const QString& codigoInmueble)
{
    Query q(dm.datosrusos, dm.Transacion, QString::fromLatin1(kSqlLeerRusos));
    q.paramByName(QStringLiteral("codigo")).setAsString(reports::normalizarCodigo(codigoInmueble));
    q.open();
    TextosRusos t;
    if (!q.eof()) {
        t.informacion = q.fieldByName(QStringLiteral("CARTELES_INFORMARUS")).asString();
        t.cabecera = q.fieldByName(QStringLiteral("CARTELES_CABECERARUS")).asString();
        t.pie = q.fieldByName(QStringLiteral("CARTELES_PIERUS")).asString();
    }
    q.close();
    return t;
}

void guardarTextosRusos(Tdm& dm, const QString& codigoInmueble, const TextosRusos& textos)
{
    const QString codigo = reports::normalizarCodigo(codigoInmueble);
    Query q(dm.datosrusos, dm.Transacion, QString::fromLatin1(kSqlGuardarRusos));
    q.paramByName(QStringLiteral("informa")).setAsString(textos.informacion);
    q.paramByName(QStringLiteral("cabera_ruso")).setAsString(textos.cabecera);
    q.paramByName(QStringLiteral("pie_ruso")).setAsString(textos.pie);
    q.paramByName(QStringLiteral("codigo")).setAsString(codigo);
    q.exec();
    if (q.rowsAffected() == 0)
        throw noExiste(codigo);
    dm.Transacion.commitRetaining();
}

} // namespace tv::registro
