#include "cli.h"

#include "report.h"
#include "reportdata.h"

#include <QFileInfo>
#include <QMap>

#include <iostream>

namespace tv::cli {

namespace {

int informe(const std::string& nombre, const std::string& datos, const std::string& salida,
            const std::vector<std::string>& parametros)
{
    QMap<QString, QString> p;
    for (const std::string& kv : parametros) {
        const QString s = QString::fromStdString(kv);
        const int eq = s.indexOf(QLatin1Char('='));
        if (eq <= 0) {
            std::cerr << "Parámetro no válido: " << kv << " (use --param CLAVE=VALOR)\n";
            return 1;
        }
        p.insert(s.left(eq).trimmed().toLower(), s.mid(eq + 1));
    }
    const QString nombreInforme = QString::fromStdString(nombre);
    const QString destino = QFileInfo(QString::fromStdString(salida)).absoluteFilePath();
    try {
        // A template named outright must exist before any data is read.
        if (nombreInforme.compare(QLatin1String("ficha"), Qt::CaseInsensitive) != 0 &&
            !QFileInfo::exists(reports::templatePath(nombreInforme)) &&
            !QFileInfo::exists(reports::templatePath(nombreInforme.toLower())) &&
            nombreInforme.compare(QLatin1String("in_inmueblegestion"), Qt::CaseInsensitive) != 0)
            throw reports::ReportError(
                QStringLiteral("No se encuentra la plantilla del informe: %1").arg(reports::templatePath(nombreInforme)));
        auto data = openData(datos);
        QString plantilla;
        const QVariantMap valores = reports::datosPorNombre(*data, nombreInforme, p, &plantilla);
        reports::exportPdf(plantilla, valores, destino);
        data->Transacion.commit();
        std::cout << "Informe " << plantilla.toStdString() << " guardado en " << destino.toStdString() << '\n';
        return 0;
    } catch (const reports::ReportError& e) {
        std::cerr << e.message().toStdString() << '\n';
        return 1;
    }
}

} // namespace

void addInformeCommand(CLI::App& app, int& exitCode)
{
    auto* cmd = app.add_subcommand("informe", "Genera un informe de la carpeta informes/ en un fichero PDF");
    static std::string nombre;
    static std::string datos;
    static std::string salida;
    static std::vector<std::string> parametros;
    static bool listar = false;
    cmd->add_option("NOMBRE", nombre, "Plantilla del informe (in_ficha_piso, in_ofertas, ... o ficha)");
    cmd->add_option("--datos", datos, "Carpeta de datos o servidor:carpeta");
    cmd->add_option("--salida", salida, "Fichero PDF que se escribe");
    cmd->add_option("--param", parametros, "Parámetro del informe, CLAVE=VALOR (por ejemplo codigo=00012)")
        ->allow_extra_args(false);
    cmd->add_flag("--lista", listar, "Muestra los informes y sus parámetros");
    cmd->callback([&exitCode] {
        if (listar) {
            for (const QString& l : reports::informesDisponibles())
                std::cout << l.toStdString() << '\n';
            exitCode = 0;
            return;
        }
        if (nombre.empty() || salida.empty()) {
            std::cerr << "Indique el informe y el fichero de salida: informe NOMBRE --salida FICHERO.pdf\n";
            exitCode = 1;
            return;
        }
        exitCode = informe(nombre, datos, salida, parametros);
    });
}

} // namespace tv::cli
