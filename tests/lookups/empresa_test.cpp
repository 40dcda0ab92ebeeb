#include "frmempresa.h"

#include "appstate.h"
#include "commands.h"
#include "frmmunicipio.h"
#include "lookups.h"
#include "picturebinder.h"
#include "query.h"
#include "scripteddialogs.h"
#include "scriptedservices.h"
#include "testdata.h"

#include <QAction>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QScopeGuard>
#include <QtTest/QTest>
#include <gtest/gtest.h>

using namespace tv;
using lookups::TfrmEmpresa;
using Action = tv::ui::RecordScreen::Action;
using Kind = tv::test::ScriptedDialogs::Kind;

namespace {

const QString kPregunta = QStringLiteral("Esta seguro de grabar los cambios?");

// The checks on saving, in their order, with a value that satisfies each.
struct Obligatorio {
    const char* campo;
    const char* mensaje;
    const char* valor;
};
const Obligatorio kObligatorios[] = {
    {"NOMBRE", "Debe indicar el nombre de la empresa", "INMOBILIARIA PEÑA"},
    {"DIRECCION", "Debe indicar la dirección de la empresa", "C/ Mayor, 1"},
    {"MUNICIPIO", "Debe indicar el municipio", "Gandía"},
    {"PROVINCIA", "Debe indicar la provincia", "Valencia"},
    {"CODPOSTAL", "Debe indicar el código postal", "46700"},
};

class EmpresaTest : public ::testing::Test {
protected:
    void SetUp() override { ui::appState().reset(); }
    void TearDown() override { ui::appState().reset(); }

    void abrir()
    {
        screen = std::make_unique<TfrmEmpresa>(data.dm());
        screen->show();
        screen->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(screen.get()));
    }

    QLineEdit* caja(const char* campo) const
    {
        return qobject_cast<QLineEdit*>(screen->controlFor(QString::fromLatin1(campo)));
    }

    // Types into a box as the user would: select all, delete, then the
    // characters one by one (accented ones included).
    void escribir(const char* campo, const QString& texto)
    {
        QLineEdit* e = caja(campo);
        ASSERT_NE(e, nullptr) << campo;
        e->setFocus();
        e->selectAll();
        if (!e->text().isEmpty())
            QTest::keyClick(e, Qt::Key_Delete);
        for (const QChar ch : texto)
            QTest::sendKeyEvent(QTest::Click, e, Qt::Key_unknown, QString(ch), Qt::NoModifier);
    }

    void rellenarObligatorios()
    {
        for (const Obligatorio& o : kObligatorios)
            escribir(o.campo, QString::fromUtf8(o.valor));
    }

    // What the database holds now, through the screen's own transaction.
    QStringList filaEnBase()
    {
        Query q(data.dm().datos, data.dm().Transacion,
                QStringLiteral("SELECT CODIGO, NOMBRE, DIRECCION, MUNICIPIO, PROVINCIA, CODPOSTAL, PAIS, MONEDA, CIF "
                               "FROM EMPRESA ORDER BY CODIGO"));
        QStringList out;
        for (q.open(); !q.eof(); q.next())
            for (int i = 0; i < q.fieldCount(); ++i)
                out.append(q.field(i).isNull() ? QStringLiteral("<null>") : q.field(i).asString());
        q.close();
        return out;
    }

    QByteArray logoEnBase()
    {
        Query q(data.dm().datos, data.dm().Transacion, QStringLiteral("SELECT LOGO FROM EMPRESA"));
        q.open();
        const QByteArray b = q.eof() ? QByteArray() : q.field(0).asBytes();
        q.close();
        return b;
    }

    DataSet& ds() const { return *screen->dataSet(); }
    QString valor(const char* campo) const { return ds().fieldByName(QString::fromLatin1(campo)).asString(); }

    test::TestData data;
    test::ScriptedDialogs dialogs;
    std::unique_ptr<TfrmEmpresa> screen;
};

} // namespace

TEST_F(EmpresaTest, ShowsTheAgencyOnThreePagesWithOnlySaveCancelAndExit)
{
    abrir();
    ASSERT_EQ(screen->paginas()->count(), 3);
    EXPECT_EQ(screen->paginas()->tabText(0), QStringLiteral("Datos generales"));
    EXPECT_EQ(screen->paginas()->tabText(1), QStringLiteral("Cuenta bancaria"));
    EXPECT_EQ(screen->paginas()->tabText(2), QStringLiteral("Correo saliente"));
    EXPECT_EQ(caja("NOMBRE")->text(), QStringLiteral("MI INMOBILIARIA"));
    EXPECT_EQ(caja("MONEDA")->text(), QStringLiteral("€"));
    EXPECT_EQ(caja("MONEDA")->maxLength(), 1) << "the currency is one character";
    EXPECT_EQ(caja("PAIS")->text(), QStringLiteral("España"));

    for (const char* campo : {"NOMBRE", "DIRECCION", "MUNICIPIO", "PROVINCIA", "CODPOSTAL", "PAIS", "MONEDA", "CIF",
                              "TELEFONO", "FAX", "MAIL", "TERMINALSERVER", "VERSION", "BANCO", "SUCURSAL", "DC",
                              "CUENTA", "SUFIJO", "M_HOST", "M_PORT", "M_USERNAME", "M_CLAVE"})
        EXPECT_NE(caja(campo), nullptr) << campo;
    EXPECT_NE(screen->logo(), nullptr);
    EXPECT_EQ(caja("M_CLAVE")->echoMode(), QLineEdit::Password);
    EXPECT_TRUE(caja("VERSION")->isReadOnly());
    EXPECT_EQ(caja("VERSION")->text(), QStringLiteral("1"));
    // Each page holds its own columns.
    EXPECT_TRUE(screen->paginas()->widget(1)->isAncestorOf(caja("CUENTA")));
    EXPECT_TRUE(screen->paginas()->widget(2)->isAncestorOf(caja("M_HOST")));
    EXPECT_TRUE(screen->paginas()->widget(0)->isAncestorOf(screen->logo()->label()));
    EXPECT_EQ(screen->botonEscudo()->text(), QStringLiteral("Escudo"));
    EXPECT_EQ(screen->botonElegirImagen()->text(), QStringLiteral("Elegir imagen…"));

    for (Action a : {Action::Nuevo, Action::Borrar, Action::Anterior, Action::Siguiente, Action::Buscar,
                     Action::Imprimir})
        EXPECT_FALSE(screen->action(a)->isVisible());
    EXPECT_TRUE(screen->action(Action::Grabar)->isVisible());
    EXPECT_FALSE(screen->action(Action::Grabar)->isEnabled()) << "nothing typed yet";
    EXPECT_TRUE(screen->action(Action::Salir)->isEnabled());
}

TEST_F(EmpresaTest, EveryCheckInItsOrderFocusesItsBoxAndSavesNothing)
{
    Query::execute(data.dm().datos, data.dm().Transacion, QStringLiteral("UPDATE EMPRESA SET NOMBRE = ''"));
    data.dm().Transacion.commitRetaining();
    abrir();
    const QStringList antes = filaEnBase();
    // A blank name counts as none; the record starts on another page.
    escribir("NOMBRE", QStringLiteral("   "));
    screen->paginas()->setCurrentIndex(2);

    for (const Obligatorio& o : kObligatorios) {
        SCOPED_TRACE(o.campo);
        EXPECT_FALSE(screen->grabar());
        ASSERT_EQ(dialogs.log().size(), 1) << "no question before every check has passed";
        EXPECT_EQ(dialogs.log().at(0).kind, Kind::Warning);
        EXPECT_EQ(dialogs.log().at(0).text, QString::fromUtf8(o.mensaje));
        dialogs.clear();
        EXPECT_EQ(screen->paginas()->currentIndex(), 0);
        EXPECT_TRUE(caja(o.campo)->hasFocus());
        EXPECT_EQ(ds().state(), DataSet::State::Edit);
        EXPECT_EQ(filaEnBase(), antes);
        escribir(o.campo, QString::fromUtf8(o.valor));
    }

    dialogs.answer(true);
    EXPECT_TRUE(screen->grabar());
    EXPECT_EQ(dialogs.texts(), QStringList{kPregunta});
    EXPECT_EQ(filaEnBase(), (QStringList{QStringLiteral("1"), QStringLiteral("INMOBILIARIA PEÑA"),
                                         QStringLiteral("C/ Mayor, 1"), QStringLiteral("Gandía"),
                                         QStringLiteral("Valencia"), QStringLiteral("46700"), QStringLiteral("España"),
                                         QStringLiteral("€"), QStringLiteral("<null>")}));
}

TEST_F(EmpresaTest, WithoutPostalCodeNothingIsSavedAndTheTypingStays)
{
    abrir();
    const QStringList antes = filaEnBase();
    rellenarObligatorios();
    escribir("CODPOSTAL", QString());
    escribir("CIF", QStringLiteral("B12345678"));

    EXPECT_FALSE(screen->grabar());
    EXPECT_EQ(dialogs.texts(), QStringList{QStringLiteral("Debe indicar el código postal")});
    EXPECT_TRUE(caja("CODPOSTAL")->hasFocus());
    EXPECT_EQ(filaEnBase(), antes);
    EXPECT_EQ(ds().state(), DataSet::State::Edit);
    EXPECT_EQ(valor("DIRECCION"), QStringLiteral("C/ Mayor, 1"));
    EXPECT_EQ(caja("CIF")->text(), QStringLiteral("B12345678"));
    EXPECT_TRUE(screen->action(Action::Grabar)->isEnabled());
}

TEST_F(EmpresaTest, AsksItsOwnQuestionNoKeepsTheDatabaseYesSaves)
{
    abrir();
    const QStringList antes = filaEnBase();
    rellenarObligatorios();

    dialogs.answer(false);
    QTest::keyClick(screen.get(), Qt::Key_F3);
    ASSERT_EQ(dialogs.log().size(), 1);
    EXPECT_EQ(dialogs.log().at(0).kind, Kind::Confirmation);
    EXPECT_EQ(dialogs.log().at(0).text, kPregunta) << "no opening question mark, no accent";
    EXPECT_EQ(filaEnBase(), antes);
    EXPECT_EQ(ds().state(), DataSet::State::Edit);
    EXPECT_EQ(valor("MUNICIPIO"), QStringLiteral("Gandía"));

    dialogs.clear();
    dialogs.answer(true);
    EXPECT_TRUE(screen->grabar());
    EXPECT_EQ(dialogs.texts(), QStringList{kPregunta});
    EXPECT_EQ(ds().state(), DataSet::State::Browse);
    EXPECT_FALSE(ds().updatesPending());
    const QStringList despues = filaEnBase();
    ASSERT_EQ(despues.size(), 9);
    EXPECT_EQ(despues.mid(1, 5), (QStringList{QStringLiteral("INMOBILIARIA PEÑA"), QStringLiteral("C/ Mayor, 1"),
                                              QStringLiteral("Gandía"), QStringLiteral("Valencia"),
                                              QStringLiteral("46700")}));
    // Committed: another connection's view is the same.
    data.dm().Transacion.commit();
    EXPECT_EQ(filaEnBase(), despues);
}

TEST_F(EmpresaTest, BankMailAndOtherColumnsAreStored)
{
    abrir();
    rellenarObligatorios();
    const std::pair<const char*, const char*> otros[] = {
        {"CIF", "B12345678"},  {"TELEFONO", "962000000"}, {"FAX", "962000001"},     {"MAIL", "info@pena.es"},
        {"TERMINALSERVER", "S"}, {"BANCO", "2100"},        {"SUCURSAL", "0001"},     {"DC", "22"},
        {"CUENTA", "0123456789"}, {"SUFIJO", "000"},        {"M_HOST", "smtp.pena.es"}, {"M_PORT", "587"},
        {"M_USERNAME", "info"},  {"M_CLAVE", "secreta"},
    };
    for (const auto& [campo, texto] : otros)
        escribir(campo, QString::fromLatin1(texto));
    // Account boxes take digits only.
    escribir("BANCO", QStringLiteral("21A0"));
    EXPECT_EQ(caja("BANCO")->text(), QStringLiteral("210"));
    escribir("BANCO", QStringLiteral("2100"));

    dialogs.answer(true);
    ASSERT_TRUE(screen->grabar());
    for (const auto& [campo, texto] : otros) {
        const QVariant v = Query::scalar(data.dm().datos, data.dm().Transacion,
                                         QStringLiteral("SELECT %1 FROM EMPRESA").arg(QString::fromLatin1(campo)));
        EXPECT_EQ(v.toString(), QString::fromLatin1(texto)) << campo;
    }
}

TEST_F(EmpresaTest, AnEmptyTableGetsItsRowAndCodeOnlyWhenSaved)
{
    Query::execute(data.dm().datos, data.dm().Transacion, QStringLiteral("DELETE FROM EMPRESA"));
    data.dm().Transacion.commitRetaining();
    const qlonglong generador = Query::genId(data.dm().datos, data.dm().Transacion, QStringLiteral("GEN_REMESAS"), 0);
    abrir();
    EXPECT_TRUE(ds().isEmpty());
    EXPECT_FALSE(screen->action(Action::Grabar)->isEnabled());

    escribir("CIF", QStringLiteral("B98765432"));
    EXPECT_EQ(ds().state(), DataSet::State::Insert);
    EXPECT_FALSE(screen->grabar());
    EXPECT_EQ(dialogs.texts(), QStringList{QStringLiteral("Debe indicar el nombre de la empresa")});
    dialogs.clear();
    EXPECT_TRUE(filaEnBase().isEmpty());
    EXPECT_EQ(Query::genId(data.dm().datos, data.dm().Transacion, QStringLiteral("GEN_REMESAS"), 0), generador)
        << "a refused save draws no number";

    rellenarObligatorios();
    dialogs.answer(true);
    ASSERT_TRUE(screen->grabar());
    const QStringList fila = filaEnBase();
    ASSERT_EQ(fila.size(), 9) << "one row";
    EXPECT_EQ(fila.at(0).toLongLong(), generador + 1) << "CODIGO from GEN_REMESAS";
    EXPECT_EQ(fila.at(1), QStringLiteral("INMOBILIARIA PEÑA"));
    EXPECT_EQ(fila.at(8), QStringLiteral("B98765432"));
}

TEST_F(EmpresaTest, EscudoStoresTheBitmapOfTheApplicationFolder)
{
    abrir();
    QFile archivo(TfrmEmpresa::rutaEscudo());
    ASSERT_TRUE(archivo.open(QIODevice::ReadOnly)) << TfrmEmpresa::rutaEscudo().toStdString();
    const QByteArray bmp = archivo.readAll();
    const QImage imagen = QImage::fromData(bmp, "BMP");
    ASSERT_FALSE(imagen.isNull()) << "a real bitmap";
    EXPECT_GE(imagen.width(), 64);
    EXPECT_TRUE(TfrmEmpresa::rutaEscudo().endsWith(QStringLiteral("/bmp/escudoBlanco.bmp")));
    EXPECT_TRUE(logoEnBase().isEmpty());

    QTest::mouseClick(screen->botonEscudo(), Qt::LeftButton);
    EXPECT_EQ(ds().state(), DataSet::State::Edit);
    EXPECT_EQ(ds().fieldByName(QStringLiteral("LOGO")).asBytes(), bmp);
    EXPECT_FALSE(screen->logo()->label()->pixmap().isNull()) << "the logo is shown";

    rellenarObligatorios();
    dialogs.answer(true);
    ASSERT_TRUE(screen->grabar());
    EXPECT_EQ(logoEnBase(), bmp);
}

TEST_F(EmpresaTest, ElegirImagenTakesAnyPictureAndRefusesOtherFiles)
{
    abrir();
    QTemporaryDir dir;
    QImage rojo(40, 20, QImage::Format_RGB32);
    rojo.fill(Qt::red);
    const QString png = dir.path() + QStringLiteral("/logo.png");
    ASSERT_TRUE(rojo.save(png, "PNG"));
    QFile f(png);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QByteArray bytes = f.readAll();
    const QString texto = dir.path() + QStringLiteral("/notas.txt");
    QFile t(texto);
    ASSERT_TRUE(t.open(QIODevice::WriteOnly));
    t.write("no soy una imagen");
    t.close();

    test::ScriptedServices services;
    // Cancelled: nothing changes.
    services.fileAnswer(QString());
    EXPECT_FALSE(screen->elegirImagen());
    ASSERT_EQ(services.calls().size(), 1);
    EXPECT_EQ(services.calls().at(0).kind, test::ScriptedServices::Kind::OpenFile);
    EXPECT_EQ(ds().state(), DataSet::State::Browse);

    // Not a picture: said, and nothing changes.
    services.fileAnswer(texto);
    EXPECT_FALSE(screen->elegirImagen());
    services.calls();
    ASSERT_EQ(dialogs.log().size(), 1);
    EXPECT_EQ(dialogs.log().at(0).kind, Kind::Warning);
    EXPECT_EQ(dialogs.log().at(0).text, QStringLiteral("El archivo no contiene una imagen válida: ") + texto);
    EXPECT_EQ(ds().state(), DataSet::State::Browse);

    services.fileAnswer(png);
    QTest::mouseClick(screen->botonElegirImagen(), Qt::LeftButton);
    EXPECT_EQ(services.calls().size(), 3);
    EXPECT_EQ(ds().fieldByName(QStringLiteral("LOGO")).asBytes(), bytes);
    rellenarObligatorios();
    dialogs.answer(true);
    ASSERT_TRUE(screen->grabar());
    EXPECT_EQ(logoEnBase(), bytes);
}

TEST_F(EmpresaTest, AChosenPlaceFillsMunicipalityProvinceAndCountry)
{
    abrir();
    EXPECT_EQ(screen->botonMunicipio()->text(), QStringLiteral("…"));
    ASSERT_TRUE(screen->ponerLugar(QStringLiteral("Alicante"), QStringLiteral("Elche/Elx"), QStringLiteral("España")));
    EXPECT_EQ(ds().state(), DataSet::State::Edit);
    EXPECT_EQ(caja("MUNICIPIO")->text(), QStringLiteral("Elche/Elx"));
    EXPECT_EQ(caja("PROVINCIA")->text(), QStringLiteral("Alicante"));
    EXPECT_EQ(caja("PAIS")->text(), QStringLiteral("España"));

    escribir("DIRECCION", QStringLiteral("Plaza Mayor 3"));
    escribir("CODPOSTAL", QStringLiteral("03201"));
    dialogs.answer(true);
    ASSERT_TRUE(screen->grabar());
    const QStringList fila = filaEnBase();
    EXPECT_EQ(fila.mid(3, 4), (QStringList{QStringLiteral("Elche/Elx"), QStringLiteral("Alicante"),
                                           QStringLiteral("03201"), QStringLiteral("España")}));
}

TEST_F(EmpresaTest, TheMunicipalityButtonOpensThePickerAndTakesItsPlace)
{
    abrir();
    // The picker runs without blocking: it searches as the user would and
    // accepts the row found, or is cancelled.
    QString buscado;
    bool acepta = false;
    int abierto = 0;
    lookups::TfrmMunicipio::setModalRunner([&](QDialog& d) {
        ++abierto;
        auto* picker = qobject_cast<lookups::TfrmMunicipio*>(&d);
        if (!picker)
            return int(QDialog::Rejected);
        picker->edBuscar()->setText(buscado);
        picker->buscar();
        return int(acepta && !picker->municipios().isEmpty() ? QDialog::Accepted : QDialog::Rejected);
    });
    const auto restaurar = qScopeGuard([] { lookups::TfrmMunicipio::setModalRunner({}); });

    buscado = QStringLiteral("Gandesa");
    QTest::mouseClick(screen->botonMunicipio(), Qt::LeftButton);
    EXPECT_EQ(abierto, 1);
    EXPECT_EQ(ds().state(), DataSet::State::Browse) << "cancelled: nothing changes";
    EXPECT_TRUE(caja("MUNICIPIO")->text().isEmpty());

    acepta = true;
    QTest::mouseClick(screen->botonMunicipio(), Qt::LeftButton);
    EXPECT_EQ(abierto, 2);
    EXPECT_EQ(ds().state(), DataSet::State::Edit);
    EXPECT_EQ(caja("MUNICIPIO")->text(), QStringLiteral("Gandesa"));
    EXPECT_EQ(caja("PROVINCIA")->text(), QStringLiteral("Tarragona"));
    EXPECT_EQ(caja("PAIS")->text(), QStringLiteral("ESPAÑA"));
    EXPECT_TRUE(caja("CODPOSTAL")->hasFocus()) << "the next box to fill";
}

TEST_F(EmpresaTest, TheProcessWideCountryCurrencyAndTaxCodeFollowOnlyASave)
{
    abrir();
    rellenarObligatorios();
    escribir("PAIS", QStringLiteral("Andorra"));
    escribir("MONEDA", QStringLiteral("$"));
    escribir("CIF", QStringLiteral(" A1234567B "));

    dialogs.answer(false);
    EXPECT_FALSE(screen->grabar());
    EXPECT_TRUE(ui::appState().pais.isEmpty()) << "an unsaved record is not the agency yet";
    EXPECT_TRUE(ui::appState().cif.isEmpty());

    dialogs.answer(true);
    ASSERT_TRUE(screen->grabar());
    EXPECT_EQ(ui::appState().pais, QStringLiteral("Andorra"));
    EXPECT_EQ(ui::appState().moneda, QStringLiteral("$"));
    EXPECT_EQ(ui::appState().cif, QStringLiteral("A1234567B"));
}

TEST_F(EmpresaTest, TheCommandOpensTheScreenModally)
{
    ui::commands().clear();
    lookups::registrarComandos();
    const ui::Command* c = ui::commands().find(QStringLiteral("configurar-empresa"));
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->openAs, ui::OpenAs::Modal);
    std::unique_ptr<QWidget> w(c->factory(nullptr));
    EXPECT_NE(qobject_cast<TfrmEmpresa*>(w.get()), nullptr);
    ui::commands().clear();
}
