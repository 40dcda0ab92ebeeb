// Times the hot paths on a large synthetic agency against the same work done
// by one hand-written statement on the same data (the limit), in one run, and
// prints each as a ratio to its limit.
#include "datafolder.h"
#include "dataset.h"
#include "demodata.h"
#include "dm.h"
#include "fbenvironment.h"

#include <CLI/CLI.hpp>

#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

using namespace tv;

namespace {

double medianMs(int runs, const std::function<void()>& f)
{
    std::vector<double> t;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        f();
        t.push_back(timer.nsecsElapsed() / 1e6);
    }
    std::sort(t.begin(), t.end());
    return t[t.size() / 2];
}

void row(const char* what, double ms, double limitMs)
{
    std::printf("%-48s %10.2f ms %10.2f ms %8.2f\n", what, ms, limitMs, limitMs > 0 ? ms / limitMs : 0.0);
}

const char* const kListSql = "SELECT I.CODIGO, I.DESCRIPCION, I.MUNICIPIO, I.EUROIMPORTE, I.CODTIPOINMUEBLE, "
                             "I.CODTIPOOPERACION, I.ACTIVADO FROM INMUEBLES I ORDER BY I.CODIGO";

} // namespace

int main(int argc, char** argv)
{
    prepareFirebirdEnvironment();
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);

    CLI::App cli{"tejavista-bench: tiempos de los caminos calientes frente a su límite"};
    std::string folder;
    DemoSize size;
    size.agentes = 20;
    size.propietarios = 20000;
    size.clientes = 30000;
    size.inmuebles = 90000;
    size.demandas = 50000;
    int runs = 5;
    cli.add_option("--carpeta", folder, "Carpeta de datos a usar o crear (por omisión, una temporal)");
    cli.add_option("--inmuebles", size.inmuebles, "Inmuebles de la agencia sintética (máximo 99999)");
    cli.add_option("--repeticiones", runs, "Repeticiones de cada medida (se da la mediana)");
    CLI11_PARSE(cli, argc, argv);

    QTemporaryDir tmp;
    const QString dir = folder.empty() ? tmp.path() + QStringLiteral("/bench") : QString::fromStdString(folder);
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
    std::printf("%d inmuebles; mediana de %d repeticiones\n\n", total, runs);
    std::printf("%-48s %13s %13s %8s\n", "operación", "tiempo", "límite", "ratio");

    // The first screen of the big list: the data set must not read the table to show 40 rows.
    const double open = medianMs(runs, [&] {
        DataSet ds(data.datos, data.Transacion);
        ds.setSelectSQL(QString::fromLatin1(kListSql));
        ds.open();
        ds.fetchMore(40);
    });
    const double openLimit = medianMs(runs, [&] {
        Query q(data.datos, data.Transacion, QString::fromLatin1(kListSql).replace(QStringLiteral("SELECT "), QStringLiteral("SELECT FIRST 40 ")));
        for (q.open(); !q.eof(); q.next()) {
        }
    });
    row("Abrir la lista de inmuebles (40 filas)", open, openLimit);

    // Walking the whole list (scrolling to the end of the grid).
    const double all = medianMs(runs, [&] {
        DataSet ds(data.datos, data.Transacion);
        ds.setSelectSQL(QString::fromLatin1(kListSql));
        ds.open();
        ds.last();
    });
    const double allLimit = medianMs(runs, [&] {
        Query q(data.datos, data.Transacion, QString::fromLatin1(kListSql));
        for (q.open(); !q.eof(); q.next()) {
        }
    });
    row("Recorrer la lista de inmuebles entera", all, allLimit);

    // A record screen on one property: open by code, edit, save.
    const double edit = medianMs(runs, [&] {
        DataSet ds(data.datos, data.Transacion);
        ds.setSelectSQL(QStringLiteral("SELECT * FROM INMUEBLES WHERE CODIGO = :CODIGO"));
        ds.paramByName(QStringLiteral("CODIGO")).setAsString(QStringLiteral("00500"));
        ds.setUpdateSql({{}, QStringLiteral("UPDATE INMUEBLES SET DESCRIPCION = :DESCRIPCION WHERE CODIGO = :OLD_CODIGO"), {}, {}});
        ds.open();
        ds.edit();
        ds.fieldByName(QStringLiteral("DESCRIPCION")).setAsString(QStringLiteral("Piso reformado"));
        ds.post();
        ds.applyUpdates();
        data.Transacion.commitRetaining();
    });
    const double editLimit = medianMs(runs, [&] {
        Query::execute(data.datos, data.Transacion,
                       QStringLiteral("UPDATE INMUEBLES SET DESCRIPCION = 'Piso reformado' WHERE CODIGO = '00500'"));
        data.Transacion.commitRetaining();
    });
    row("Ficha de un inmueble: abrir, cambiar, grabar", edit, editLimit);

    data.Transacion.commit();
    data.cerrarConexiones();
    data.datosrusos.close();
    return 0;
}
