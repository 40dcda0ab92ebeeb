#include "alarmwatcher.h"
#include "appstate.h"
#include "datapath.h"
#include "dataset.h"
#include "frmmain.h"
#include "migration.h"
#include "ribbon.h"
#include "scripteddialogs.h"
#include "startup.h"
#include "testdata.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace tv;
using tv::shell::TfrmMain;

namespace {

void addProperty(Tdm& dm, const QString& code, const QVariant& obs, const QVariant& internas)
{
    Query q(dm.datos, dm.Transacion,
            QStringLiteral("INSERT INTO INMUEBLES (CODIGO, CODTIPOINMUEBLE, CODTIPOOPERACION, OBSERVACIONES, "
                           "OBSERVA_INTERNAS) VALUES (:C, 1, 1, :O, :I)"));
    q.paramByName(QStringLiteral("C")).setAsString(code);
    q.paramByName(QStringLiteral("O")).setValue(obs);
    q.paramByName(QStringLiteral("I")).setValue(internas);
    q.exec();
}

QVariant column(Tdm& dm, const QString& sql)
{
    return Query::scalar(dm.datos, dm.Transacion, sql);
}

void execute(Tdm& dm, const QString& sql)
{
    Query::execute(dm.datos, dm.Transacion, sql);
    dm.Transacion.commitRetaining();
}

void openAgain(Tdm& dm)
{
    if (!dm.datos.isOpen())
        dm.abrirConexiones();
}

// Starts a main window the way the program does after its first show.
bool start(TfrmMain& w)
{
    w.setAutoStart(false);
    return w.arrancar();
}

class StartSequence : public ::testing::Test {
protected:
    void SetUp() override
    {
        ui::appState().reset();
        currentDataPaths() = {};
    }
    void TearDown() override { ui::appState().reset(); }

    test::TestData data{false};
    test::ScriptedDialogs dialogs;
};

} // namespace

TEST_F(StartSequence, OpensEverythingLogsInAndReadsTheAgency)
{
    openAgain(data.dm());
    execute(data.dm(), QStringLiteral("UPDATE EMPRESA SET CIF = 'B12345678'"));
    data.dm().cerrarConexiones();
    data.dm().datosrusos.close();
    TfrmMain w(data.dm());
    EXPECT_FALSE(data.dm().datos.isOpen());
    ASSERT_TRUE(start(w));
    EXPECT_TRUE(data.dm().datos.isOpen());
    EXPECT_TRUE(data.dm().datosrusos.isOpen());
    EXPECT_TRUE(data.dm().dbInformes.isOpen());
    EXPECT_TRUE(data.dm().Imagenes.isOpen());
    EXPECT_TRUE(w.tbconfiguracion().isOpen());
    EXPECT_TRUE(w.tbEmpresa().isOpen());
    const ui::AppState& s = ui::appState();
    EXPECT_EQ(s.iniciado, 1);
    EXPECT_EQ(s.agentCode, 0);
    EXPECT_EQ(w.windowTitle(), QStringLiteral("tejavista - USUARIO TODOS"));
    EXPECT_EQ(s.pais, QStringLiteral("España"));
    EXPECT_EQ(s.moneda, QStringLiteral("€"));
    EXPECT_EQ(s.cif, QStringLiteral("B12345678"));
    EXPECT_EQ(s.documentsFolder, data.dm().dataFolder()) << "DOCU_RED is N";
    EXPECT_TRUE(s.templatesFolder.endsWith(QStringLiteral("/plantillas")));
    EXPECT_TRUE(dialogs.log().isEmpty());
}

TEST_F(StartSequence, MigrationRunsOnceAndCutsTo5000Characters)
{
    openAgain(data.dm());
    const QString longText = QString(6200, QLatin1Char('a'));
    addProperty(data.dm(), QStringLiteral("00001"),
                QStringLiteral("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 Piso c\\'e9ntrico\\par}"),
                QStringLiteral("<html><body><p>Llaves en <b>oficina</b></p></body></html>"));
    addProperty(data.dm(), QStringLiteral("00002"), longText, QVariant());
    execute(data.dm(), QStringLiteral("UPDATE CONFIGURACION SET OBSERVACIONES_MIGRADAS = 'N'"));

    {
        TfrmMain w(data.dm());
        ASSERT_TRUE(start(w));
        EXPECT_EQ(column(data.dm(), QStringLiteral("SELECT OBSERVACIONES_MIGRADAS FROM CONFIGURACION")).toString(),
                  QStringLiteral("S"));
    }
    Tdm& dm = data.dm();
    EXPECT_EQ(column(dm, QStringLiteral("SELECT OBSERVACIONES_TEXTO FROM INMUEBLES WHERE CODIGO = '00001'")).toString(),
              QStringLiteral("Piso céntrico"));
    EXPECT_EQ(column(dm, QStringLiteral("SELECT OBSERVA_INTERNAS_TEXTO FROM INMUEBLES WHERE CODIGO = '00001'")).toString(),
              QStringLiteral("Llaves en oficina"));
    const QString cut = column(dm, QStringLiteral("SELECT OBSERVACIONES_TEXTO FROM INMUEBLES WHERE CODIGO = '00002'")).toString();
    EXPECT_EQ(cut.size(), 5000);
    EXPECT_TRUE(column(dm, QStringLiteral("SELECT OBSERVA_INTERNAS_TEXTO FROM INMUEBLES WHERE CODIGO = '00002'")).isNull());
    EXPECT_EQ(column(dm, QStringLiteral("SELECT OBSERVACIONES FROM INMUEBLES WHERE CODIGO = '00002'")).toString(), longText)
        << "the rich text itself is untouched";

    // The next start skips it: a changed observation keeps its old plain text.
    openAgain(dm);
    execute(dm, QStringLiteral("UPDATE INMUEBLES SET OBSERVACIONES = 'Otro texto' WHERE CODIGO = '00001'"));
    ui::appState().reset();
    TfrmMain again(dm);
    ASSERT_TRUE(start(again));
    EXPECT_EQ(column(dm, QStringLiteral("SELECT OBSERVACIONES_TEXTO FROM INMUEBLES WHERE CODIGO = '00001'")).toString(),
              QStringLiteral("Piso céntrico"));
}

TEST_F(StartSequence, MigrationWritesRowByRowAndMarksTheDatabase)
{
    openAgain(data.dm());
    for (int i = 1; i <= 3; ++i)
        addProperty(data.dm(), QStringLiteral("0000%1").arg(i), QStringLiteral("Texto %1").arg(i), QVariant());
    EXPECT_EQ(shell::migration::migrarObservaciones(data.dm()), 3);
    EXPECT_EQ(column(data.dm(), QStringLiteral("SELECT COUNT(*) FROM INMUEBLES WHERE OBSERVACIONES_TEXTO = 'Texto 2'")).toInt(), 1);
    EXPECT_EQ(shell::migration::kSqlMarcar, QStringLiteral("UPDATE CONFIGURACION SET OBSERVACIONES_MIGRADAS ='S' "));
    EXPECT_EQ(shell::migration::textoPlano(QString(5001, QLatin1Char('x'))).size(), 5000);
}

TEST_F(StartSequence, MigrationStoresWhatTheColumnsCannotHoldAsAQuestionMark)
{
    openAgain(data.dm());
    // An arrow and Cyrillic in old RTF: outside WIN1252, they must not stop the start.
    addProperty(data.dm(), QStringLiteral("00001"),
                QStringLiteral("{\\rtf1\\ansi {\\fonttbl}Precio \\u8594? bajo, 5 \\u8364? \\u1046?}"), QVariant());
    EXPECT_EQ(shell::migration::migrarObservaciones(data.dm()), 1);
    EXPECT_EQ(column(data.dm(), QStringLiteral("SELECT OBSERVACIONES_TEXTO FROM INMUEBLES WHERE CODIGO = '00001'")).toString(),
              QStringLiteral("Precio ? bajo, 5 € ?"));
}

TEST_F(StartSequence, DocumentsFolderCatalanTemplatesAndLocalMode)
{
    EXPECT_EQ(shell::startup::carpetaDocumentos(QStringLiteral("N"), QStringLiteral("/datos"), QStringLiteral("//srv/datos")),
              QStringLiteral("/datos"));
    EXPECT_EQ(shell::startup::carpetaDocumentos(QStringLiteral("S"), QStringLiteral("/datos"), QStringLiteral("//srv/datos")),
              QStringLiteral("//srv/datos"));
    EXPECT_EQ(shell::startup::carpetaPlantillas(QStringLiteral("/app"), 1), QStringLiteral("/app/plantillas/cat"));
    EXPECT_EQ(shell::startup::carpetaPlantillas(QStringLiteral("/app"), 0), QStringLiteral("/app/plantillas"));

    openAgain(data.dm());
    execute(data.dm(), QStringLiteral("UPDATE CONFIGURACION SET DOCU_RED = 'S'"));
    currentDataPaths().networkPath = QStringLiteral("//servidor/tejavista");
    {
        TfrmMain w(data.dm());
        ASSERT_TRUE(start(w));
        EXPECT_EQ(ui::appState().documentsFolder, QStringLiteral("//servidor/tejavista"));
        EXPECT_FALSE(w.ribbon()->isCommandVisible(QStringLiteral("configurar-red"))) << "libreria.dll: local mode";
    }
    QFile::remove(data.folder() + QStringLiteral("/libreria.dll"));
    openAgain(data.dm());
    ui::appState().reset();
    TfrmMain w(data.dm());
    ASSERT_TRUE(start(w));
    EXPECT_TRUE(w.ribbon()->isCommandVisible(QStringLiteral("configurar-red")));
}

TEST_F(StartSequence, CancelledLoginClosesEverything)
{
    openAgain(data.dm());
    execute(data.dm(), QStringLiteral("INSERT INTO AGENTES (CODIGO, APEYNOM, USUARIO, CONTRASENA) VALUES (1, 'A', 'a', 'b')"));
    TfrmMain w(data.dm());
    w.setLoginRunner([](shell::TfrmEntrada&) { return int(QDialog::Rejected); });
    w.show();
    EXPECT_FALSE(start(w));
    EXPECT_FALSE(w.isVisible());
    EXPECT_FALSE(data.dm().datos.isOpen());
    EXPECT_EQ(ui::appState().iniciado, 0);
}

TEST_F(StartSequence, MissingDatabaseShowsTheDatabaseMessage)
{
    Tdm broken(data.folder() + QStringLiteral("/no-existe"));
    TfrmMain w(broken);
    EXPECT_FALSE(start(w));
    ASSERT_EQ(dialogs.log().size(), 1);
    EXPECT_EQ(dialogs.log().at(0).kind, test::ScriptedDialogs::Kind::Error);
    EXPECT_TRUE(dialogs.log().at(0).text.contains(QLatin1String("no-existe"))) << dialogs.log().at(0).text.toStdString();
    EXPECT_EQ(ui::appState().iniciado, 0);
}

TEST_F(StartSequence, ReminderWatcherStartsOnlyWhenAllowed)
{
    int started = 0;
    shell::alarms::setAlarmWatcherStarter([&](Tdm&, QWidget*) { ++started; });
    openAgain(data.dm());
    EXPECT_EQ(shell::alarms::kSqlDesactivar, QStringLiteral(" select DESACTIVAR_MENSAJES from configuracion "));
    {
        TfrmMain w(data.dm());
        ASSERT_TRUE(start(w));
        EXPECT_EQ(started, 1);
    }
    openAgain(data.dm());
    execute(data.dm(), QStringLiteral("UPDATE CONFIGURACION SET DESACTIVAR_MENSAJES = 'S'"));
    EXPECT_FALSE(shell::alarms::arrancar(data.dm(), nullptr));
    execute(data.dm(), QStringLiteral("UPDATE CONFIGURACION SET DESACTIVAR_MENSAJES = 'N'"));
    QFile marker(data.folder() + QStringLiteral("/nohilos.txt"));
    ASSERT_TRUE(marker.open(QIODevice::WriteOnly));
    marker.close();
    EXPECT_FALSE(shell::alarms::arrancar(data.dm(), nullptr));
    QFile::remove(marker.fileName());
    EXPECT_TRUE(shell::alarms::arrancar(data.dm(), nullptr));
    EXPECT_EQ(started, 2);
    shell::alarms::setAlarmWatcherStarter({});
}
