#include "cli.h"

#include "datapath.h"
#include "fbenvironment.h"

#include <QGuiApplication>

#include <iostream>

namespace tv::cli {

QString resolveDataPath(const std::string& option)
{
    if (!option.empty())
        return QString::fromStdString(option);
    return findDataPath(DataPathPlaces::standard());
}

std::unique_ptr<Tdm> openData(const std::string& option)
{
    const QString dataPath = resolveDataPath(option);
    // Before the first attachment: the lock folder belongs to this data folder.
    prepareFirebirdEnvironment(dataPath);
    auto data = std::make_unique<Tdm>(dataPath);
    data->datos.open();
    data->Imagenes.open();
    data->dbInformes.open();
    return data;
}

} // namespace tv::cli

int main(int argc, char** argv)
{
    // The private folder also serves as Qt's runtime folder, so it comes before
    // the application; the lock folder waits for the data folder.
    try {
        tv::preparePrivateFirebirdRoot();
    } catch (const tv::FirebirdEnvironmentError& e) {
        std::cerr << e.message().toStdString() << '\n';
        return 1;
    }
    // Reports render text and PDFs, which needs a GUI application; no display is needed.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);

    CLI::App cli{"tejavista-cli: las reglas del programa sin ventanas"};
    cli.require_subcommand(1);
    int exitCode = 0;
    tv::cli::addDatosCommands(cli, exitCode);
    tv::cli::addInformeCommand(cli, exitCode);
    tv::cli::addCuotaCommand(cli, exitCode);
    tv::cli::addNifCommand(cli, exitCode);
    try {
        cli.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return cli.exit(e);
    } catch (const tv::FirebirdEnvironmentError& e) {
        std::cerr << e.message().toStdString() << '\n';
        return 1;
    } catch (const tv::DatabaseError& e) {
        std::cerr << "Error de la base de datos: " << e.message().toStdString() << '\n';
        return 1;
    } catch (const std::exception& e) {
        std::cerr << "Error: " << e.what() << '\n';
        return 1;
    }
    return exitCode;
}
