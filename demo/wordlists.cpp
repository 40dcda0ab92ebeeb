#include "wordlists.h"

#include <QFile>
#include <QStringDecoder>

#include <algorithm>
#include <stdexcept>

namespace tv::demo {

namespace {

[[noreturn]] void fail(const QString& path, int line, const QString& what)
{
    throw std::runtime_error(QStringLiteral("%1:%2: %3").arg(path).arg(line).arg(what).toStdString());
}

// The lines of a UTF-8 file, without the line ends; a last line end adds no line.
// Other encodings are refused rather than read with their accents garbled.
QStringList linesOf(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) fail(path, 0, QStringLiteral("cannot be read"));
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8(f.readAll());
    if (utf8.hasError()) fail(path, 0, QStringLiteral("not UTF-8"));
    QStringList lines = text.split(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty()) lines.removeLast();
    for (QString& l : lines)
        if (l.endsWith(QLatin1Char('\r'))) l.chop(1);
    return lines;
}

const QString kDir = QStringLiteral(":/demo/");

int toInt(const QString& path, int line, const QString& s)
{
    bool ok = false;
    const int v = s.toInt(&ok);
    if (!ok) fail(path, line, QStringLiteral("not a whole number: ") + s);
    return v;
}

double toDouble(const QString& path, int line, const QString& s)
{
    bool ok = false;
    const double v = s.toDouble(&ok);
    if (!ok) fail(path, line, QStringLiteral("not a number: ") + s);
    return v;
}

// Rows of a table with their line numbers in the file (the header is line 1).
struct Rows {
    QString path;
    std::vector<QStringList> rows;
    int line(size_t i) const { return int(i) + 2; }
    int num(size_t i, int field) const { return toInt(path, line(i), rows[i].at(field)); }
};

Rows table(const char* name, const QStringList& columns)
{
    const QString path = kDir + QLatin1String(name);
    return {path, readTable(path, columns)};
}

QStringList list(const char* name)
{
    return readList(kDir + QLatin1String(name));
}

// Each entry as many times as its weight (second column).
QStringList weighted(const char* name, const QString& column)
{
    const Rows t = table(name, {column, QStringLiteral("peso")});
    QStringList out;
    for (size_t i = 0; i < t.rows.size(); ++i)
        for (int k = t.num(i, 1); k > 0; --k)
            out << t.rows[i].at(0);
    return out;
}

bool flag(const Rows& t, size_t i, int field)
{
    const QString& s = t.rows[i].at(field);
    if (s != QLatin1String("S") && s != QLatin1String("N"))
        fail(t.path, t.line(i), QStringLiteral("S or N: ") + s);
    return s == QLatin1String("S");
}

void readTowns(WordLists& w)
{
    const Rows t = table("municipios.tsv",
                         {QStringLiteral("municipio"), QStringLiteral("provincia"), QStringLiteral("ine"),
                          QStringLiteral("cp"), QStringLiteral("codigos_postales"), QStringLiteral("peso"),
                          QStringLiteral("precio_pct"), QStringLiteral("costa"), QStringLiteral("latitud"),
                          QStringLiteral("longitud")});
    for (size_t i = 0; i < t.rows.size(); ++i) {
        const QStringList& r = t.rows[i];
        Town town;
        town.name = r[0];
        town.province = r[1];
        town.ine = t.num(i, 2);
        town.cp = t.num(i, 3);
        town.cpCount = t.num(i, 4);
        town.weight = t.num(i, 5);
        town.priceFactor = t.num(i, 6);
        town.coast = flag(t, i, 7);
        town.lat = toDouble(t.path, t.line(i), r[8]);
        town.lon = toDouble(t.path, t.line(i), r[9]);
        w.towns.push_back(town);
    }
    // Every town needs a zone: properties are placed in one.
    const Rows z = table("zonas.tsv", {QStringLiteral("ine"), QStringLiteral("zona")});
    for (size_t i = 0; i < z.rows.size(); ++i) {
        const int ine = z.num(i, 0);
        auto it = std::find_if(w.towns.begin(), w.towns.end(), [ine](const Town& x) { return x.ine == ine; });
        if (it == w.towns.end()) fail(z.path, z.line(i), QStringLiteral("no town with this INE code"));
        it->zones << z.rows[i].at(1);
    }
    for (const Town& town : w.towns)
        if (town.zones.isEmpty()) fail(z.path, 0, QStringLiteral("no zone for ") + town.name);
}

void readTipos(WordLists& w)
{
    const Rows t =
        table("tipos.tsv", {QStringLiteral("codigo"), QStringLiteral("familia"), QStringLiteral("nombre"),
                            QStringLiteral("descripcion"), QStringLiteral("ingles"), QStringLiteral("ruso"),
                            QStringLiteral("peso"), QStringLiteral("m2_min"), QStringLiteral("m2_max"),
                            QStringLiteral("venta_min"), QStringLiteral("venta_max"),
                            QStringLiteral("alquiler_min"), QStringLiteral("alquiler_max")});
    for (size_t i = 0; i < t.rows.size(); ++i) {
        const QStringList& r = t.rows[i];
        Tipo x;
        x.codigo = t.num(i, 0);
        x.familia = t.num(i, 1);
        if (x.familia < 1 || x.familia > 8) fail(t.path, t.line(i), QStringLiteral("family 1 to 8"));
        x.nombre = r[2];
        x.mayus = r[3];
        x.ingles = r[4];
        x.ruso = r[5];
        x.peso = t.num(i, 6);
        x.m2Min = t.num(i, 7);
        x.m2Max = t.num(i, 8);
        x.ventaMin = t.num(i, 9);
        x.ventaMax = t.num(i, 10);
        x.alqMin = t.num(i, 11);
        x.alqMax = t.num(i, 12);
        w.tipos.push_back(x);
    }
}

void readOperaciones(WordLists& w)
{
    const Rows t = table("operaciones.tsv",
                         {QStringLiteral("codigo"), QStringLiteral("nombre"), QStringLiteral("en_operacion"),
                          QStringLiteral("cabecera"), QStringLiteral("cabecera_ingles")});
    for (size_t i = 0; i < t.rows.size(); ++i) {
        // The generator indexes them by code.
        if (t.num(i, 0) != int(i) + 1) fail(t.path, t.line(i), QStringLiteral("codes run 1, 2, 3..."));
        const QStringList& r = t.rows[i];
        w.operaciones.push_back({r[1], r[2], r[3], r[4]});
    }
}

void readFlags(WordLists& w)
{
    const Rows t = table("caracteristicas.tsv",
                         {QStringLiteral("columna"), QStringLiteral("viviendas"), QStringLiteral("casas"),
                          QStringLiteral("terrenos"), QStringLiteral("naves"), QStringLiteral("locales"),
                          QStringLiteral("garajes"), QStringLiteral("edificios"), QStringLiteral("fincas"),
                          QStringLiteral("texto")});
    for (size_t i = 0; i < t.rows.size(); ++i) {
        Flag f;
        f.column = t.rows[i].at(0).toLatin1();
        for (int k = 0; k < 8; ++k)
            f.percent[size_t(k)] = t.num(i, k + 1);
        f.texto = t.rows[i].at(9);
        w.flags.push_back(f);
    }
}

void readExtranjeros(WordLists& w)
{
    const Rows t =
        table("extranjeros.tsv", {QStringLiteral("nombre"), QStringLiteral("sexo"), QStringLiteral("pais")});
    for (size_t i = 0; i < t.rows.size(); ++i) {
        const QStringList& r = t.rows[i];
        if (r[1] != QLatin1String("H") && r[1] != QLatin1String("M"))
            fail(t.path, t.line(i), QStringLiteral("H or M"));
        w.extranjeros.push_back({r[0], r[1] == QLatin1String("M"), r[2]});
    }
}

void readSiglas(WordLists& w)
{
    const Rows t =
        table("siglas.tsv", {QStringLiteral("sigla"), QStringLiteral("nombre"), QStringLiteral("peso")});
    for (size_t i = 0; i < t.rows.size(); ++i) {
        const QStringList& r = t.rows[i];
        w.nombreVia.insert(r[0], r[1]);
        for (int k = t.num(i, 2); k > 0; --k)
            w.siglas << r[0];
    }
}

void readTextosInmueble(WordLists& w)
{
    const Rows t = table("textos_inmueble.tsv", {QStringLiteral("familia"), QStringLiteral("texto")});
    for (size_t i = 0; i < t.rows.size(); ++i) {
        const int fam = t.num(i, 0);
        if (fam < 1 || fam > 8) fail(t.path, t.line(i), QStringLiteral("family 1 to 8"));
        w.textosInmueble[size_t(fam - 1)] << t.rows[i].at(1);
    }
    for (size_t k = 0; k < w.textosInmueble.size(); ++k)
        if (w.textosInmueble[k].isEmpty())
            fail(t.path, 0, QStringLiteral("no text for family %1").arg(k + 1));
}

void readGastos(WordLists& w)
{
    const Rows t = table("gastos.tsv", {QStringLiteral("tipo"), QStringLiteral("minimo"),
                                        QStringLiteral("maximo"), QStringLiteral("peso")});
    for (size_t i = 0; i < t.rows.size(); ++i)
        w.gastos.push_back({t.rows[i].at(0), t.num(i, 1), t.num(i, 2), t.num(i, 3), {}});
    const Rows c = table("conceptos_gasto.tsv", {QStringLiteral("tipo"), QStringLiteral("concepto")});
    for (size_t i = 0; i < c.rows.size(); ++i) {
        const QString& tipo = c.rows[i].at(0);
        auto it = std::find_if(w.gastos.begin(), w.gastos.end(),
                               [&](const ClaseGasto& g) { return g.tipo == tipo; });
        if (it == w.gastos.end()) fail(c.path, c.line(i), QStringLiteral("no such expense type: ") + tipo);
        it->conceptos << c.rows[i].at(1);
    }
    for (const ClaseGasto& g : w.gastos)
        if (g.conceptos.isEmpty()) fail(c.path, 0, QStringLiteral("no description for ") + g.tipo);
}

WordLists load()
{
    WordLists w;
    readTowns(w);
    readTipos(w);
    readOperaciones(w);
    readFlags(w);
    w.hombres = list("nombres_hombre.txt");
    w.mujeres = list("nombres_mujer.txt");
    w.apellidos = list("apellidos.txt");
    readExtranjeros(w);
    w.calles = list("calles.txt");
    w.caminos = list("caminos.txt");
    readSiglas(w);
    w.estadosCiviles = weighted("estados_civiles.tsv", QStringLiteral("estado"));
    w.situacionesLaborales = weighted("situaciones_laborales.tsv", QStringLiteral("situacion"));
    w.estudios = list("estudios.txt");
    w.notasCliente = list("notas_cliente.txt");
    w.notasPropietario = list("notas_propietario.txt");
    readTextosInmueble(w);
    w.notasInternas = list("notas_internas.txt");
    w.motivosDescarte = list("motivos_descarte.txt");
    w.resultadosGestion = list("resultados_gestion.txt");
    w.recordatorios = list("recordatorios.txt");
    w.departamentos = list("departamentos.txt");
    w.dominiosCorreo = list("dominios_correo.txt");
    w.bancos = list("bancos.txt");
    w.meses = list("meses.txt");
    if (w.meses.size() != 12)
        fail(kDir + QStringLiteral("meses.txt"), 0, QStringLiteral("twelve months expected"));
    readGastos(w);
    return w;
}

} // namespace

QStringList readList(const QString& path)
{
    const QStringList lines = linesOf(path);
    for (int i = 0; i < lines.size(); ++i)
        if (lines[i].trimmed().isEmpty()) fail(path, i + 1, QStringLiteral("empty line"));
    if (lines.isEmpty()) fail(path, 0, QStringLiteral("no entries"));
    return lines;
}

std::vector<QStringList> readTable(const QString& path, const QStringList& columns)
{
    const QStringList lines = linesOf(path);
    if (lines.isEmpty() || lines.first().split(QLatin1Char('\t')) != columns)
        fail(path, 1, QStringLiteral("the first line must be: ") + columns.join(QLatin1Char(' ')));
    std::vector<QStringList> rows;
    for (int i = 1; i < lines.size(); ++i) {
        const QStringList fields = lines[i].split(QLatin1Char('\t'));
        if (fields.size() != columns.size())
            fail(path, i + 1,
                 QStringLiteral("%1 fields instead of %2").arg(fields.size()).arg(columns.size()));
        rows.push_back(fields);
    }
    if (rows.empty()) fail(path, 0, QStringLiteral("no rows"));
    return rows;
}

const WordLists& wordLists()
{
    static const WordLists lists = load();
    return lists;
}

} // namespace tv::demo
