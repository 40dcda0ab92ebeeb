// Times the hot paths on a large synthetic agency against the same work done
// by one hand-written statement on the same data (the limit), in one run, and
// prints each as a ratio to its limit.
#include "datafolder.h"
#include "dataset.h"
#include "demodata.h"
#include "dm.h"
#include "dialogs.h"
#include "fbenvironment.h"
#include "frminmuebles.h"
#include "migration.h"

#include <CLI/CLI.hpp>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

using namespace tv;

namespace {

void resetPeakMemory();
long peakMemoryKb();
// Peak resident memory of the last measurement, in KB.
long gLastPeakKb = 0;

double medianMs(int runs, const std::function<void()>& f)
{
    resetPeakMemory();
    std::vector<double> t;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        f();
        t.push_back(timer.nsecsElapsed() / 1e6);
    }
    std::sort(t.begin(), t.end());
    gLastPeakKb = peakMemoryKb();
    return t[t.size() / 2];
}

void row(const char* what, double ms, double limitMs, long peakKb)
{
    std::printf("%-48s %10.2f ms %10.2f ms %8.2f %9.1f MB\n", what, ms, limitMs, limitMs > 0 ? ms / limitMs : 0.0,
                peakKb / 1024.0);
}

// The statement the property register opens.
const char* const kRegistroSql = "select * from inmuebles where activado ='S' order by codigo";

// Reads what a grid shows of rows [from, to): a few columns of each.
void showRows(DataSet& ds, int from, int to)
{
    // As the grid does: rows are asked for before they are shown.
    if (to > ds.recordCount())
        ds.fetchMore(to - ds.recordCount());
    const int cols[] = {ds.fieldIndex(QStringLiteral("CODIGO")), ds.fieldIndex(QStringLiteral("DESCRIPCION")),
                        ds.fieldIndex(QStringLiteral("EUROIMPORTE"))};
    for (int r = from; r < to; ++r)
        for (int c : cols)
            ds.value(r, c);
}

// The limit: the statement through a plain cursor that keeps nothing
// (rows < 0: all of them).
void plainCursor(Tdm& data, const QString& sql, int rows)
{
    Query q(data.datos, data.Transacion, sql);
    q.setRawRows(true);
    int n = 0;
    for (q.open(); !q.eof() && (rows < 0 || n < rows); q.next())
        ++n;
}

// The screens' questions answered Yes, their messages printed.
class SiATodo : public ui::Dialogs {
public:
    void warning(const QString& t, QWidget*) override { std::fprintf(stderr, "aviso: %s\n", qPrintable(t)); }
    void error(const QString& t, QWidget*) override { std::fprintf(stderr, "error: %s\n", qPrintable(t)); }
    void information(const QString& t, QWidget*) override { std::fprintf(stderr, "info: %s\n", qPrintable(t)); }
    bool confirmation(const QString&, QWidget*) override { return true; }
};

// Peak resident memory of the process since the last reset, in KB.
long peakMemoryKb()
{
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : f.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toLong();
    return 0;
}

void resetPeakMemory()
{
    QFile f(QStringLiteral("/proc/self/clear_refs"));
    if (f.open(QIODevice::WriteOnly))
        f.write("5");
}

const char* const kListSql = "SELECT I.CODIGO, I.DESCRIPCION, I.MUNICIPIO, I.EUROIMPORTE, I.CODTIPOINMUEBLE, "
                             "I.CODTIPOOPERACION, I.ACTIVADO FROM INMUEBLES I ORDER BY I.CODIGO";

} // namespace

int main(int argc, char** argv)
{
    // The engine's private folder doubles as Qt's runtime folder: set before the application.
    try {
        preparePrivateFirebirdRoot();
    } catch (const FirebirdEnvironmentError& e) {
        std::fprintf(stderr, "%s\n", e.message().toLocal8Bit().constData());
        return 1;
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);

    CLI::App cli{"tejavista-bench: tiempos de los caminos calientes frente a su límite"};
    std::string folder;
    DemoSize size;
    size.agentes = 20;
    size.propietarios = 20000;
    size.clientes = 30000;
    size.inmuebles = 90000;
    size.demandas = 50000;
    int runs = 5;
    bool migrar = true;
    cli.add_option("--carpeta", folder, "Carpeta de datos a usar o crear (por omisión, una temporal)");
    cli.add_option("--inmuebles", size.inmuebles, "Inmuebles de la agencia sintética (máximo 99999)");
    cli.add_option("--repeticiones", runs, "Repeticiones de cada medida (se da la mediana)");
    cli.add_flag("!--sin-migracion", migrar, "No medir la migración (modifica los datos)");
    CLI11_PARSE(cli, argc, argv);

    QTemporaryDir tmp;
    const QString dir = folder.empty() ? tmp.path() + QStringLiteral("/bench") : QString::fromStdString(folder);
    prepareFirebirdEnvironment(dir, folderHasData(dir) ? DataFolderUse::Existing : DataFolderUse::New);
    if (!folderHasData(dir)) {
        QElapsedTimer t;
        t.start();
        DataFolderOptions options;
        options.fill = [&](Tdm& data) { fillDemoAgency(data, 7, size); };
        createDataFolder(dir, options);
        std::printf("Agencia sintética de %d inmuebles creada en %.1f s\n", size.inmuebles, t.elapsed() / 1000.0);
    }
    Tdm data(dir);
    data.abrirConexiones();
    const int total = Query::scalar(data.datos, data.Transacion, QStringLiteral("SELECT COUNT(*) FROM INMUEBLES")).toInt();
    std::printf("%d inmuebles; mediana de %d repeticiones; memoria: máximo residente del proceso durante "
                "la medida\n\n", total, runs);
    std::printf("%-48s %13s %13s %8s %12s\n", "operación", "tiempo", "límite", "ratio", "memoria");

    // The register's own statement: ~350 columns with blobs.
    const QString registro = QString::fromLatin1(kRegistroSql);
    const int shown = 40;
    const double regOpen = medianMs(runs, [&] {
        DataSet ds(data.datos, data.Transacion);
        ds.setSelectSQL(registro);
        ds.open();
        showRows(ds, 0, shown);
    });
    const long regOpenMem = gLastPeakKb;
    const double regOpenLimit = medianMs(runs, [&] { plainCursor(data, registro, shown); });
    row("Registro de inmuebles: primera pantalla", regOpen, regOpenLimit, regOpenMem);

    const double regLast = medianMs(runs, [&] {
        DataSet ds(data.datos, data.Transacion);
        ds.setSelectSQL(registro);
        ds.open();
        ds.last();
        showRows(ds, std::max(0, ds.recordCount() - shown), ds.recordCount());
    });
    const long regLastMem = gLastPeakKb;
    // The limit reads every row once, as last() would without keys.
    const double regLastLimit = medianMs(1, [&] { plainCursor(data, registro, -1); });
    row("Registro de inmuebles: ir al último", regLast, regLastLimit, regLastMem);

    const double regWalk = medianMs(1, [&] {
        DataSet ds(data.datos, data.Transacion);
        ds.setSelectSQL(registro);
        ds.open();
        for (; !ds.eof(); ds.next())
            ds.fieldByName(QStringLiteral("DESCRIPCION")).asString();
    });
    const long regWalkMem = gLastPeakKb;
    row("Registro de inmuebles: recorrer entero", regWalk, regLastLimit, regWalkMem);

    // A failed locate (nothing matches) must not read the table.
    const double locateMiss = medianMs(runs, [&] {
        DataSet ds(data.datos, data.Transacion);
        ds.setSelectSQL(registro);
        ds.open();
        ds.locate(QStringLiteral("DESCRIPCION"), QStringLiteral("NO EXISTE"), DataSet::CaseInsensitive);
    });
    const long locateMissMem = gLastPeakKb;
    row("Registro de inmuebles: buscar sin resultado", locateMiss, regLastLimit, locateMissMem);

    const QString clientes = QStringLiteral("SELECT * FROM CLIENTES ORDER BY APEYNOM");
    const double cliOpen = medianMs(runs, [&] {
        DataSet ds(data.datos, data.Transacion);
        ds.setSelectSQL(clientes);
        ds.open();
        showRows(ds, 0, shown);
    });
    const long cliOpenMem = gLastPeakKb;
    const double cliOpenLimit = medianMs(runs, [&] { plainCursor(data, clientes, shown); });
    row("Lista de clientes: primera pantalla", cliOpen, cliOpenLimit, cliOpenMem);
    const double cliLast = medianMs(runs, [&] {
        DataSet ds(data.datos, data.Transacion);
        ds.setSelectSQL(clientes);
        ds.open();
        ds.last();
        showRows(ds, std::max(0, ds.recordCount() - shown), ds.recordCount());
    });
    const long cliLastMem = gLastPeakKb;
    const double cliLastLimit = medianMs(runs, [&] { plainCursor(data, clientes, -1); });
    row("Lista de clientes: ir al último", cliLast, cliLastLimit, cliLastMem);

    // A narrow list, read whole (no keys: the statement stands as written).
    const double all = medianMs(runs, [&] {
        DataSet ds(data.datos, data.Transacion);
        ds.setSelectSQL(QString::fromLatin1(kListSql));
        ds.open();
        ds.last();
    });
    const long allMem = gLastPeakKb;
    const double allLimit = medianMs(runs, [&] { plainCursor(data, QString::fromLatin1(kListSql), -1); });
    row("Lista corta de inmuebles: recorrerla entera", all, allLimit, allMem);

    // A record screen on one property: open by code, edit, save.
    const double edit = medianMs(runs, [&] {
        DataSet ds(data.datos, data.Transacion);
        ds.setSelectSQL(QStringLiteral("SELECT * FROM INMUEBLES WHERE CODIGO = :CODIGO"));
        ds.paramByName(QStringLiteral("CODIGO")).setAsString(QStringLiteral("00500"));
        ds.setUpdateSql({QStringLiteral("select * from inmuebles where codigo =:OLD_CODIGO"),
                         QStringLiteral("UPDATE INMUEBLES SET DESCRIPCION = :DESCRIPCION WHERE CODIGO = :OLD_CODIGO"),
                         {}, {}});
        ds.open();
        ds.edit();
        ds.fieldByName(QStringLiteral("DESCRIPCION")).setAsString(QStringLiteral("Piso reformado"));
        ds.post();
        ds.applyUpdates();
        data.Transacion.commitRetaining();
    });
    const long editMem = gLastPeakKb;
    const double editLimit = medianMs(runs, [&] {
        Query::execute(data.datos, data.Transacion,
                       QStringLiteral("UPDATE INMUEBLES SET DESCRIPCION = 'Piso reformado' WHERE CODIGO = '00500'"));
        data.Transacion.commitRetaining();
    });
    row("Ficha de un inmueble: abrir, cambiar, grabar", edit, editLimit, editMem);

    // The property register as the agent meets it: the window built and
    // shown, then record after record, then a change saved.
    {
        SiATodo respuestas;
        ui::Dialogs::install(&respuestas);
        const double abrir = medianMs(runs, [&] {
            registro::TfrmInmuebles pantalla(data);
            pantalla.show();
            QCoreApplication::processEvents();
        });
        const long abrirMem = gLastPeakKb;
        row("Cartera de Inmuebles: abrir la pantalla", abrir, regOpenLimit, abrirMem);

        registro::TfrmInmuebles pantalla(data);
        pantalla.show();
        QCoreApplication::processEvents();
        const int pasos = 200;
        const double recorrer = medianMs(runs, [&] {
            pantalla.dataSet()->first();
            for (int i = 0; i < pasos; ++i) {
                pantalla.siguiente();
                QCoreApplication::processEvents();
            }
        });
        const long recorrerMem = gLastPeakKb;
        // The limit: each property read by its key, as a record screen would.
        Query uno(data.datos, data.Transacion, QStringLiteral("SELECT * FROM INMUEBLES WHERE CODIGO = :CODIGO"));
        const double recorrerLimit = medianMs(runs, [&] {
            for (int i = 1; i <= pasos; ++i) {
                uno.paramByName(QStringLiteral("CODIGO")).setAsString(QString::number(i).rightJustified(5, QLatin1Char('0')));
                uno.open();
                uno.close();
            }
        });
        row("Cartera de Inmuebles: siguiente registro", recorrer / pasos, recorrerLimit / pasos, recorrerMem);

        const double grabar = medianMs(runs, [&] {
            pantalla.dataSet()->edit();
            pantalla.dataSet()->fieldByName(QStringLiteral("DESCRIPCION")).setAsString(QStringLiteral("Piso reformado"));
            pantalla.grabar();
            QCoreApplication::processEvents();
        });
        const long grabarMem = gLastPeakKb;
        row("Cartera de Inmuebles: grabar un cambio", grabar, editLimit, grabarMem);
        ui::Dialogs::install(nullptr);
    }

    // The one-time migration of observations, row by row as the program runs it.
    if (migrar) {
        int migrated = 0;
        const double migration = medianMs(1, [&] { migrated = shell::migration::migrarObservaciones(data); });
        const long migrationMem = gLastPeakKb;
        const double migrationLimit = medianMs(1, [&] { plainCursor(data, shell::migration::kSqlInmuebles, -1); });
        row("Migración de observaciones", migration, migrationLimit, migrationMem);
        std::printf("%-48s %10d filas\n", "", migrated);
    }

    data.Transacion.commit();
    data.cerrarConexiones();
    data.datosrusos.close();
    return 0;
}
