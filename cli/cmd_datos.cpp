#include "cli.h"

#include "datafolder.h"
#include "demodata.h"
#include "fbenvironment.h"

#include <QDir>
#include <QFile>

#include <iostream>

namespace tv::cli {

namespace {

int crearDatos(const std::string& dir, bool demo, bool replace)
{
    const QString folder = QDir(QString::fromStdString(dir)).absolutePath();
    if (replace && folderHasData(folder)) {
        // Only for rebuilding the test template: the three files go, nothing else.
        for (const QString& f : {Tdm::kDatosFile, Tdm::kImagenesFile, Tdm::kInformesFile})
            QFile::remove(folder + f);
    }
    // A folder with data is refused before any attachment; a new one gets its
    // DATOS and lock folder before its files are created.
    if (!folderHasData(folder))
        prepareFirebirdEnvironment(folder, DataFolderUse::New);
    DataFolderOptions options;
    if (demo)
        options.fill = [](Tdm& data) { fillDemoAgency(data); };
    try {
        createDataFolder(folder, options);
    } catch (const DataFolderError& e) {
        std::cerr << e.message().toStdString() << '\n';
        return 1;
    }
    std::cout << "Carpeta de datos creada en " << folder.toStdString() << (demo ? " (con la agencia de demostración)" : "")
              << '\n';
    return 0;
}

int ejecutarSql(const std::string& datos, const std::string& statement)
{
    auto data = openData(datos);
    Query q(data->datos, data->Transacion, QString::fromStdString(statement));
    q.open();
    if (q.fieldCount() == 0) {
        data->Transacion.commit();
        std::cout << q.rowsAffected() << " filas\n";
        return 0;
    }
    for (; !q.eof(); q.next()) {
        QStringList cells;
        for (int i = 0; i < q.fieldCount(); ++i) {
            const Field f = q.field(i);
            QString s;
            if (f.isNull())
                s = QString();
            else if (f.value().typeId() == QMetaType::QDateTime)
                s = f.asDateTime().toString(f.asDateTime().time() == QTime(0, 0) ? QStringLiteral("dd.MM.yyyy")
                                                                                  : QStringLiteral("dd.MM.yyyy hh:mm:ss"));
            else if (f.value().typeId() == QMetaType::QByteArray)
                s = QStringLiteral("<%1 bytes>").arg(f.asBytes().size());
            else
                s = f.asString();
            s.replace(QLatin1Char('\t'), QLatin1Char(' ')).replace(QLatin1Char('\n'), QLatin1Char(' '));
            cells.append(s);
        }
        std::cout << cells.join(QLatin1Char('\t')).toStdString() << '\n';
    }
    data->Transacion.commit();
    return 0;
}

} // namespace

void addDatosCommands(CLI::App& app, int& exitCode)
{
    auto* crear = app.add_subcommand("crear-datos", "Crea una carpeta de datos nueva (DATOS, ARCHIVOS, modo local)");
    static std::string dir;
    static bool demo = false;
    static bool replace = false;
    crear->add_option("DIR", dir, "Carpeta de datos")->required();
    crear->add_flag("--demo", demo, "Añade una agencia de demostración");
    crear->add_flag("--reemplazar", replace, "Rehace los ficheros (solo para las pruebas)")->group("");
    crear->callback([&exitCode] { exitCode = crearDatos(dir, demo, replace); });

    auto* sql = app.add_subcommand("sql", "Ejecuta una sentencia y muestra el resultado separado por tabuladores");
    static std::string datos;
    static std::string statement;
    sql->add_option("--datos", datos, "Carpeta de datos o servidor:carpeta");
    sql->add_option("SENTENCIA", statement, "Sentencia SQL")->required();
    sql->callback([&exitCode] { exitCode = ejecutarSql(datos, statement); });
}

} // namespace tv::cli
