// The shared bank directory: the checks of a bank and of a branch in their
// order, the padding of a bank code, the two linked lists with their locate
// boxes, and that every refusal and every failed delete leaves the database
// as it was.
#include "commands.h"
#include "datagrid.h"
#include "dialogs.h"
#include "frmaltabancos.h"
#include "frmbancos.h"
#include "frmsucursal.h"
#include "gridsettings.h"
#include "locatebox.h"
#include "scripteddialogs.h"
#include "testdata.h"

#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include <ostream>

// Readable texts in failure messages.
static void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}

using namespace tv;
using lookups::DatosBanco;
using lookups::Rechazo;
using lookups::TfrmAltaBancos;
using lookups::TfrmBancos;
using lookups::TfrmSucursal;
using Kind = tv::test::ScriptedDialogs::Kind;

namespace {

const QString kCodigo = QStringLiteral("Debe indicar el código del banco");
const QString kNombre = QStringLiteral("Debe indicar el nombre del banco");
const QString kSwift = QStringLiteral("Debe indicar el código BIC-SWIFT del banco");
const QString kLongitud = QStringLiteral("La longitud del BIC-SWIFT debe ser mayor de 8 caracteres");
const QString kExiste = QStringLiteral("El código del banco ya existe");
const QString kConfirmar = QStringLiteral("¿Está seguro de eliminar el registro actual? ");

// The grids' kept widths of this binary live in a temporary folder.
class RejillasAparte : public ::testing::Environment {
public:
    void SetUp() override
    {
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, mDir.path());
        ui::GridSettings::setStorageFile(mDir.path() + QStringLiteral("/rejillas-bancos.ini"));
    }

private:
    QTemporaryDir mDir;
};

const auto* const kRejillas = ::testing::AddGlobalTestEnvironment(new RejillasAparte);

void escribir(QLineEdit* edit, const QString& text)
{
    ASSERT_NE(edit, nullptr);
    edit->setText(text);
    Q_EMIT edit->textEdited(text);
}

auto nuncaExiste = [](const QString&) { return false; };

class Bancos : public ::testing::Test {
protected:
    void SetUp() override
    {
        for (const char* sql : {
                 "INSERT INTO COMUN_BANCOS (CODBANCO, DESBANCO, SUFIJO, SWIFT) VALUES ('0049', 'BANCO SANTANDER', '000', 'BSCHESMMXXX')",
                 "INSERT INTO COMUN_BANCOS (CODBANCO, DESBANCO, SUFIJO, SWIFT) VALUES ('0081', 'BANCO DE SABADELL', NULL, 'BSABESBB')",
                 "INSERT INTO COMUN_BANCOS (CODBANCO, DESBANCO, SUFIJO, SWIFT) VALUES ('0182', 'BANCO BILBAO VIZCAYA ARGENTARIA', NULL, 'BBVAESMMXXX')",
                 "INSERT INTO COMUN_BANCOS (CODBANCO, DESBANCO, SUFIJO, SWIFT) VALUES ('2100', 'CAIXABANK', NULL, 'CAIXESBBXXX')",
                 "INSERT INTO COMUN_SUCURSALES (CODBANCO, CODSUCUR, DESSUCUR, CODPOSTAL) VALUES ('0049', '1001', 'MADRID CASTELLANA', '28046')",
                 "INSERT INTO COMUN_SUCURSALES (CODBANCO, CODSUCUR, DESSUCUR, CODPOSTAL) VALUES ('0049', '2002', 'BARCELONA DIAGONAL', '08008')",
                 "INSERT INTO COMUN_SUCURSALES (CODBANCO, CODSUCUR, DESSUCUR, CODPOSTAL) VALUES ('0049', '3150', 'SEVILLA TRIANA', '41010')",
                 "INSERT INTO COMUN_SUCURSALES (CODBANCO, CODSUCUR, DESSUCUR, CODPOSTAL) VALUES ('0182', '5500', 'VALENCIA COLON', '46004')",
                 "INSERT INTO COMUN_SUCURSALES (CODBANCO, CODSUCUR, DESSUCUR, CODPOSTAL) VALUES ('2100', '0001', 'BARCELONA CENTRAL', '08001')"})
            Query::execute(data.dm().datos, data.dm().Transacion, QString::fromUtf8(sql));
        data.dm().Transacion.commitRetaining();
    }
    void TearDown() override { TfrmBancos::setModalRunner({}); }

    qlonglong contar(const QString& tabla, const QString& where = QString())
    {
        return Query::scalar(data.dm().datos, data.dm().Transacion,
                             QStringLiteral("SELECT COUNT(*) FROM ") + tabla +
                                 (where.isEmpty() ? QString() : QStringLiteral(" WHERE ") + where))
            .toLongLong();
    }
    QString texto(const QString& sql)
    {
        return Query::scalar(data.dm().datos, data.dm().Transacion, sql).toString();
    }
    static QString actual(DataSet& ds, const char* campo)
    {
        return ds.fieldByName(QLatin1String(campo)).asString();
    }

    test::TestData data;
};

} // namespace

// ------------------------------------------------------------ the plain rules

TEST(ComprobarBanco, EachMessageInItsOrder)
{
    struct Caso {
        DatosBanco banco;
        QString mensaje;
        QString campo;
    };
    const QList<Caso> casos = {
        {{QString(), QString(), QString()}, kCodigo, QStringLiteral("CODBANCO")},
        {{QStringLiteral("   "), QStringLiteral("X"), QStringLiteral("ABCDEFGH")}, kCodigo, QStringLiteral("CODBANCO")},
        {{QStringLiteral("0049"), QString(), QString()}, kNombre, QStringLiteral("DESBANCO")},
        {{QStringLiteral("0049"), QStringLiteral("  "), QStringLiteral("ABCDEFGH")}, kNombre, QStringLiteral("DESBANCO")},
        {{QStringLiteral("0049"), QStringLiteral("SANTANDER"), QString()}, kSwift, QStringLiteral("SWIFT")},
        {{QStringLiteral("0049"), QStringLiteral("SANTANDER"), QStringLiteral("  ")}, kSwift, QStringLiteral("SWIFT")},
        {{QStringLiteral("0049"), QStringLiteral("SANTANDER"), QStringLiteral("BSCH")}, kLongitud, QStringLiteral("SWIFT")},
    };
    for (const Caso& c : casos) {
        const Rechazo r = lookups::comprobarBanco(c.banco, true, nuncaExiste);
        EXPECT_EQ(r.mensaje, c.mensaje);
        EXPECT_EQ(r.campo, c.campo) << c.mensaje.toStdString();
        EXPECT_EQ(r.esError, c.mensaje == kLongitud) << "only the length is an error";
    }
}

class LongitudSwift : public ::testing::TestWithParam<std::pair<const char*, bool>> {};

TEST_P(LongitudSwift, SevenRefusedEightAndElevenAccepted)
{
    const auto [swift, aceptado] = GetParam();
    const Rechazo r = lookups::comprobarBanco({QStringLiteral("0049"), QStringLiteral("SANTANDER"), QString::fromLatin1(swift)},
                                              true, nuncaExiste);
    EXPECT_EQ(r.aceptado(), aceptado) << swift;
    if (!aceptado) {
        EXPECT_EQ(r.mensaje, kLongitud);
        EXPECT_TRUE(r.esError);
    }
}

INSTANTIATE_TEST_SUITE_P(ComprobarBanco, LongitudSwift,
                         ::testing::Values(std::pair{"BSCHESM", false}, std::pair{"  BSCHESM   ", false},
                                           std::pair{"B", false}, std::pair{"BSCHESMM", true},
                                           std::pair{" BSCHESMM ", true}, std::pair{"BSCHESMMXXX", true}));

TEST(ComprobarBanco, ADuplicateCodeIsRefusedOnlyForANewBankAndAskedLast)
{
    QStringList preguntados;
    auto existe = [&](const QString& codigo) {
        preguntados.append(codigo);
        return true;
    };
    const DatosBanco banco{QStringLiteral("0049"), QStringLiteral("SANTANDER"), QStringLiteral("BSCHESMMXXX")};
    const Rechazo r = lookups::comprobarBanco(banco, true, existe);
    EXPECT_EQ(r.mensaje, kExiste);
    EXPECT_EQ(r.campo, QStringLiteral("CODBANCO"));
    EXPECT_FALSE(r.esError);
    EXPECT_EQ(preguntados, QStringList{QStringLiteral("0049")});
    EXPECT_TRUE(lookups::comprobarBanco(banco, false, existe).aceptado()) << "a modified bank keeps its code";
    EXPECT_EQ(lookups::comprobarBanco({QStringLiteral("0049"), QStringLiteral("SANTANDER"), QStringLiteral("BSCH")},
                                      true, existe)
                  .mensaje,
              kLongitud);
    EXPECT_EQ(preguntados.size(), 1) << "the database is asked only once the rest passed";
}

TEST(RellenarCodigoBanco, NumericCodesToFourDigitsOthersAsTyped)
{
    const QList<std::pair<QString, QString>> casos = {
        {QStringLiteral("49"), QStringLiteral("0049")},   {QStringLiteral("1"), QStringLiteral("0001")},
        {QStringLiteral("182"), QStringLiteral("0182")},  {QStringLiteral("0049"), QStringLiteral("0049")},
        {QStringLiteral("2100"), QStringLiteral("2100")}, {QStringLiteral(" 49 "), QStringLiteral("0049")},
        {QStringLiteral("12345"), QStringLiteral("12345")}, {QStringLiteral("AB"), QStringLiteral("AB")},
        {QStringLiteral("4A"), QStringLiteral("4A")},     {QStringLiteral("-4"), QStringLiteral("-4")},
        {QString(), QString()},                          {QStringLiteral("  "), QStringLiteral("  ")},
    };
    for (const auto& [escrito, esperado] : casos)
        EXPECT_EQ(lookups::rellenarCodigoBanco(escrito), esperado) << escrito.toStdString();
}

TEST(ComprobarSucursal, EachMessageInItsOrder)
{
    int preguntas = 0;
    auto existe = [&](const QString&) {
        ++preguntas;
        return true;
    };
    EXPECT_EQ(lookups::comprobarSucursal({QString(), QString()}, true, existe).mensaje,
              QStringLiteral("Debe indicar el código de la sucursal"));
    EXPECT_EQ(lookups::comprobarSucursal({QStringLiteral("1001"), QStringLiteral(" ")}, true, existe).mensaje,
              QStringLiteral("Debe indicar el nombre de la sucursal"));
    EXPECT_EQ(preguntas, 0);
    const Rechazo r = lookups::comprobarSucursal({QStringLiteral("1001"), QStringLiteral("CENTRO")}, true, existe);
    EXPECT_EQ(r.mensaje, QStringLiteral("El código de la sucursal ya existe"));
    EXPECT_EQ(r.campo, QStringLiteral("CODSUCUR"));
    EXPECT_TRUE(lookups::comprobarSucursal({QStringLiteral("1001"), QStringLiteral("CENTRO")}, false, existe).aceptado());
    EXPECT_EQ(preguntas, 1);
}

// ------------------------------------------------------------ the two lists

TEST_F(Bancos, TheBranchesFollowTheSelectedBank)
{
    TfrmBancos screen(data.dm());
    DataSet& bancos = screen.bancos();
    DataSet& sucursales = screen.sucursales();
    ASSERT_EQ(bancos.recordCount(), 4);
    EXPECT_EQ(actual(bancos, "CODBANCO"), QStringLiteral("0049")) << "in code order";
    EXPECT_EQ(sucursales.recordCount(), 3);
    EXPECT_EQ(actual(sucursales, "CODSUCUR"), QStringLiteral("1001"));

    bancos.next();
    EXPECT_EQ(actual(bancos, "CODBANCO"), QStringLiteral("0081"));
    EXPECT_TRUE(sucursales.isEmpty());
    EXPECT_FALSE(screen.btnModificarSucursal()->isEnabled());
    EXPECT_FALSE(screen.btnBorrarSucursal()->isEnabled());
    EXPECT_TRUE(screen.btnNuevaSucursal()->isEnabled());

    // Choosing a row in the grid moves the bank, and so its branches.
    screen.rejillaBancos()->setCurrentIndex(screen.rejillaBancos()->model()->index(2, 0));
    EXPECT_EQ(actual(bancos, "CODBANCO"), QStringLiteral("0182"));
    ASSERT_EQ(sucursales.recordCount(), 1);
    EXPECT_EQ(actual(sucursales, "DESSUCUR"), QStringLiteral("VALENCIA COLON"));
    EXPECT_EQ(screen.rejillaSucursales()->model()->rowCount(), 1);
    EXPECT_TRUE(screen.btnModificarSucursal()->isEnabled());
}

TEST_F(Bancos, TheLocateBoxesMoveToTheFirstRowStartingWithTheText)
{
    TfrmBancos screen(data.dm());
    DataSet& bancos = screen.bancos();
    DataSet& sucursales = screen.sucursales();
    EXPECT_EQ(screen.buscarCodigoBanco()->fieldName(), QStringLiteral("CODBANCO"));
    EXPECT_EQ(screen.buscarNombreBanco()->fieldName(), QStringLiteral("DESBANCO"));
    EXPECT_EQ(screen.buscarCodigoSucursal()->fieldName(), QStringLiteral("CODSUCUR"));
    EXPECT_EQ(screen.buscarNombreSucursal()->fieldName(), QStringLiteral("DESSUCUR"));

    QTest::keyClicks(screen.buscarCodigoBanco(), QStringLiteral("21"));
    EXPECT_EQ(actual(bancos, "CODBANCO"), QStringLiteral("2100"));
    EXPECT_EQ(actual(sucursales, "DESSUCUR"), QStringLiteral("BARCELONA CENTRAL"));

    QTest::keyClicks(screen.buscarNombreBanco(), QStringLiteral("banco de"));
    EXPECT_EQ(actual(bancos, "CODBANCO"), QStringLiteral("0081")) << "case ignored, first of the list's order";
    QTest::keyClicks(screen.buscarCodigoBanco(), QStringLiteral("9"));
    EXPECT_EQ(actual(bancos, "CODBANCO"), QStringLiteral("0081")) << "\"219\" matches no code: the row stays";

    screen.buscarNombreBanco()->setText(QStringLiteral("BANCO S"));
    EXPECT_EQ(actual(bancos, "CODBANCO"), QStringLiteral("0049"));
    ASSERT_EQ(sucursales.recordCount(), 3);
    QTest::keyClicks(screen.buscarCodigoSucursal(), QStringLiteral("3"));
    EXPECT_EQ(actual(sucursales, "CODSUCUR"), QStringLiteral("3150"));
    QTest::keyClicks(screen.buscarNombreSucursal(), QStringLiteral("barc"));
    EXPECT_EQ(actual(sucursales, "CODSUCUR"), QStringLiteral("2002"));
    EXPECT_EQ(screen.rejillaSucursales()->currentIndex().row(), 1) << "the grid shows where it went";
    EXPECT_EQ(actual(bancos, "CODBANCO"), QStringLiteral("0049")) << "the bank stays";
}

// ------------------------------------------------------------ banks

TEST_F(Bancos, NewBankMessagesInOrderPaddedCodeAndStored)
{
    test::ScriptedDialogs dialogs;
    TfrmBancos screen(data.dm());
    int vistos = 0;
    TfrmBancos::setModalRunner([&](QDialog& d) {
        auto* alta = qobject_cast<TfrmAltaBancos*>(&d);
        EXPECT_NE(alta, nullptr);
        if (!alta)
            return int(QDialog::Rejected);
        ++vistos;
        EXPECT_TRUE(alta->esNuevo());
        EXPECT_EQ(screen.bancos().state(), DataSet::State::Insert);
        EXPECT_TRUE(alta->edCodigo()->isEnabled());
        alta->show();

        struct Paso {
            QLineEdit* caja;
            QString texto;
            QString mensaje;
            Kind kind;
            QLineEdit* foco;
        };
        const QList<Paso> pasos = {
            {nullptr, QString(), kCodigo, Kind::Warning, alta->edCodigo()},
            {alta->edCodigo(), QStringLiteral("12"), kNombre, Kind::Warning, alta->edNombre()},
            {alta->edNombre(), QStringLiteral("BANCO NUEVO"), kSwift, Kind::Warning, alta->edSwift()},
            {alta->edSwift(), QStringLiteral("ABCDEFG"), kLongitud, Kind::Error, alta->edSwift()},
        };
        for (const Paso& p : pasos) {
            if (p.caja) {
                escribir(p.caja, p.texto);
                Q_EMIT p.caja->editingFinished(); // the user leaves the box
            }
            alta->edSufijo()->setFocus();
            EXPECT_FALSE(alta->aceptar());
            const auto& log = dialogs.log();
            EXPECT_EQ(log.size(), 1);
            if (!log.isEmpty()) {
                EXPECT_EQ(log.last().text, p.mensaje);
                EXPECT_EQ(log.last().kind, p.kind) << p.mensaje.toStdString();
            }
            dialogs.clear();
            EXPECT_EQ(alta->focusWidget(), p.foco) << p.mensaje.toStdString();
            EXPECT_EQ(screen.bancos().state(), DataSet::State::Insert);
            EXPECT_EQ(contar(QStringLiteral("COMUN_BANCOS")), 4);
        }
        EXPECT_EQ(alta->edCodigo()->text(), QStringLiteral("0012")) << "padded on leaving the box";
        escribir(alta->edSwift(), QStringLiteral("abcdefgh"));
        EXPECT_TRUE(alta->aceptar());
        return alta->result();
    });
    screen.btnNuevoBanco()->click();
    EXPECT_EQ(vistos, 1);
    EXPECT_EQ(contar(QStringLiteral("COMUN_BANCOS")), 5);
    EXPECT_EQ(contar(QStringLiteral("COMUN_BANCOS"),
                     QStringLiteral("CODBANCO = '0012' AND DESBANCO = 'BANCO NUEVO' AND SWIFT = 'ABCDEFGH'")),
              1);
    DataSet& bancos = screen.bancos();
    EXPECT_FALSE(bancos.isEditing());
    EXPECT_FALSE(bancos.updatesPending());
    EXPECT_EQ(actual(bancos, "CODBANCO"), QStringLiteral("0012"));
    EXPECT_EQ(bancos.recNo(), 0) << "in its place of the list's order";
    EXPECT_TRUE(screen.sucursales().isEmpty());
}

TEST_F(Bancos, ACodeAcceptedWithoutLeavingTheBoxIsPaddedToo)
{
    test::ScriptedDialogs dialogs;
    TfrmBancos screen(data.dm());
    TfrmBancos::setModalRunner([&](QDialog& d) {
        auto* alta = qobject_cast<TfrmAltaBancos*>(&d);
        escribir(alta->edCodigo(), QStringLiteral("49"));
        escribir(alta->edNombre(), QStringLiteral("OTRO SANTANDER"));
        escribir(alta->edSwift(), QStringLiteral("BSCHESMM"));
        EXPECT_FALSE(alta->aceptar());
        EXPECT_EQ(dialogs.texts(), QStringList{kExiste});
        dialogs.clear();
        EXPECT_EQ(screen.bancos().state(), DataSet::State::Insert) << "the record stays in edit";
        EXPECT_EQ(alta->focusWidget(), alta->edCodigo());
        EXPECT_EQ(contar(QStringLiteral("COMUN_BANCOS")), 4);
        EXPECT_EQ(texto(QStringLiteral("SELECT DESBANCO FROM COMUN_BANCOS WHERE CODBANCO = '0049'")),
                  QStringLiteral("BANCO SANTANDER"));

        escribir(alta->edCodigo(), QStringLiteral("128"));
        EXPECT_TRUE(alta->aceptar());
        return alta->result();
    });
    screen.nuevoBanco();
    EXPECT_EQ(contar(QStringLiteral("COMUN_BANCOS"), QStringLiteral("CODBANCO = '0128'")), 1);
    EXPECT_EQ(contar(QStringLiteral("COMUN_BANCOS"), QStringLiteral("CODBANCO = '49' OR CODBANCO = '128'")), 0);
}

TEST_F(Bancos, ModifyingABankKeepsItsCodeAndSkipsTheDuplicateTest)
{
    test::ScriptedDialogs dialogs;
    TfrmBancos screen(data.dm());
    screen.bancos().next(); // 0081
    TfrmBancos::setModalRunner([&](QDialog& d) {
        auto* alta = qobject_cast<TfrmAltaBancos*>(&d);
        EXPECT_FALSE(alta->esNuevo());
        EXPECT_FALSE(alta->edCodigo()->isEnabled()) << "the branches hang from the code";
        EXPECT_EQ(alta->edNombre()->text(), QStringLiteral("BANCO DE SABADELL"));
        escribir(alta->edNombre(), QStringLiteral("BANCO SABADELL"));
        escribir(alta->edSwift(), QStringLiteral("BSABESBBXXX"));
        EXPECT_TRUE(alta->aceptar());
        return alta->result();
    });
    screen.btnModificarBanco()->click();
    EXPECT_EQ(texto(QStringLiteral("SELECT DESBANCO FROM COMUN_BANCOS WHERE CODBANCO = '0081'")),
              QStringLiteral("BANCO SABADELL"));
    EXPECT_EQ(actual(screen.bancos(), "CODBANCO"), QStringLiteral("0081"));
    EXPECT_EQ(actual(screen.bancos(), "SWIFT"), QStringLiteral("BSABESBBXXX"));

    // Cancelled: neither list nor database changes.
    TfrmBancos::setModalRunner([&](QDialog& d) {
        auto* alta = qobject_cast<TfrmAltaBancos*>(&d);
        escribir(alta->edNombre(), QStringLiteral("NO"));
        alta->btnCancelar()->click();
        return alta->result();
    });
    screen.modificarBanco();
    EXPECT_FALSE(screen.bancos().isEditing());
    EXPECT_FALSE(screen.bancos().updatesPending());
    EXPECT_EQ(actual(screen.bancos(), "DESBANCO"), QStringLiteral("BANCO SABADELL"));
    EXPECT_EQ(texto(QStringLiteral("SELECT DESBANCO FROM COMUN_BANCOS WHERE CODBANCO = '0081'")),
              QStringLiteral("BANCO SABADELL"));
}

TEST_F(Bancos, DeletingABankTakesItsBranchesWithItAfterTheQuestion)
{
    test::ScriptedDialogs dialogs;
    TfrmBancos screen(data.dm());
    ASSERT_EQ(actual(screen.bancos(), "CODBANCO"), QStringLiteral("0049"));

    dialogs.answer(false);
    EXPECT_FALSE(screen.borrarBanco());
    EXPECT_EQ(dialogs.texts(), QStringList{kConfirmar});
    dialogs.clear();
    EXPECT_EQ(contar(QStringLiteral("COMUN_BANCOS")), 4);
    EXPECT_EQ(contar(QStringLiteral("COMUN_SUCURSALES"), QStringLiteral("CODBANCO = '0049'")), 3);

    dialogs.answer(true);
    screen.btnBorrarBanco()->click();
    EXPECT_EQ(dialogs.texts(), QStringList{kConfirmar});
    dialogs.clear();
    EXPECT_EQ(contar(QStringLiteral("COMUN_BANCOS"), QStringLiteral("CODBANCO = '0049'")), 0);
    EXPECT_EQ(contar(QStringLiteral("COMUN_SUCURSALES"), QStringLiteral("CODBANCO = '0049'")), 0);
    EXPECT_EQ(contar(QStringLiteral("COMUN_SUCURSALES")), 2) << "other banks keep theirs";
    EXPECT_EQ(screen.bancos().recordCount(), 3);
    EXPECT_EQ(actual(screen.bancos(), "CODBANCO"), QStringLiteral("0081"));
    EXPECT_TRUE(screen.sucursales().isEmpty());
    EXPECT_FALSE(screen.bancos().updatesPending());

    // Committed: another attachment no longer sees them.
    Tdm otro(data.folder());
    otro.datos.open();
    EXPECT_EQ(Query::scalar(otro.datos, otro.Transacion,
                            QStringLiteral("SELECT COUNT(*) FROM COMUN_SUCURSALES WHERE CODBANCO = '0049'"))
                  .toInt(),
              0);
    otro.Transacion.commit();
    otro.datos.close();
}

TEST_F(Bancos, ABankDeleteTheDatabaseRefusesKeepsEveryBranch)
{
    test::ScriptedDialogs dialogs;
    TfrmBancos screen(data.dm());
    // Another workstation renamed the bank after the list was read.
    Query::execute(data.dm().datos, data.dm().Transacion,
                   QStringLiteral("UPDATE COMUN_BANCOS SET DESBANCO = 'SANTANDER' WHERE CODBANCO = '0049'"));
    dialogs.answer(true);
    EXPECT_FALSE(screen.borrarBanco());
    const auto& log = dialogs.log();
    ASSERT_EQ(log.size(), 2);
    EXPECT_EQ(log.at(0).text, kConfirmar);
    EXPECT_EQ(log.at(1).kind, Kind::Error);
    EXPECT_FALSE(log.at(1).text.isEmpty());
    EXPECT_EQ(contar(QStringLiteral("COMUN_BANCOS"), QStringLiteral("CODBANCO = '0049'")), 1);
    EXPECT_EQ(contar(QStringLiteral("COMUN_SUCURSALES"), QStringLiteral("CODBANCO = '0049'")), 3)
        << "the branches came back with the bank";
    EXPECT_FALSE(screen.bancos().updatesPending());
    EXPECT_EQ(actual(screen.bancos(), "CODBANCO"), QStringLiteral("0049"));
    EXPECT_EQ(screen.sucursales().recordCount(), 3);
}

// ------------------------------------------------------------ branches

TEST_F(Bancos, NewBranchMessagesInOrderDuplicateRefusedAndStoredUnderItsBank)
{
    test::ScriptedDialogs dialogs;
    TfrmBancos screen(data.dm());
    ASSERT_EQ(actual(screen.bancos(), "CODBANCO"), QStringLiteral("0049"));
    TfrmBancos::setModalRunner([&](QDialog& d) {
        auto* alta = qobject_cast<TfrmSucursal*>(&d);
        EXPECT_NE(alta, nullptr);
        if (!alta)
            return int(QDialog::Rejected);
        EXPECT_TRUE(alta->esNuevo());
        EXPECT_EQ(alta->findChild<QLabel*>(QStringLiteral("lbBanco"))->text(),
                  QStringLiteral("Banco: 0049 - BANCO SANTANDER"));
        EXPECT_EQ(actual(screen.sucursales(), "CODBANCO"), QStringLiteral("0049"));
        alta->show();
        struct Paso {
            QLineEdit* caja;
            QString texto;
            QString mensaje;
            QLineEdit* foco;
        };
        const QList<Paso> pasos = {
            {nullptr, QString(), QStringLiteral("Debe indicar el código de la sucursal"), alta->edCodigo()},
            {alta->edCodigo(), QStringLiteral("1001"), QStringLiteral("Debe indicar el nombre de la sucursal"),
             alta->edNombre()},
            {alta->edNombre(), QStringLiteral("MADRID SOL"), QStringLiteral("El código de la sucursal ya existe"),
             alta->edCodigo()},
        };
        for (const Paso& p : pasos) {
            if (p.caja)
                escribir(p.caja, p.texto);
            alta->edCodigoPostal()->setFocus();
            EXPECT_FALSE(alta->aceptar());
            const auto& log = dialogs.log();
            EXPECT_EQ(log.size(), 1);
            if (!log.isEmpty()) {
                EXPECT_EQ(log.last().text, p.mensaje);
                EXPECT_EQ(log.last().kind, Kind::Warning);
            }
            dialogs.clear();
            EXPECT_EQ(alta->focusWidget(), p.foco) << p.mensaje.toStdString();
            EXPECT_EQ(screen.sucursales().state(), DataSet::State::Insert);
            EXPECT_EQ(contar(QStringLiteral("COMUN_SUCURSALES")), 5);
            EXPECT_EQ(texto(QStringLiteral("SELECT DESSUCUR FROM COMUN_SUCURSALES WHERE CODBANCO = '0049' AND "
                                           "CODSUCUR = '1001'")),
                      QStringLiteral("MADRID CASTELLANA"));
        }
        escribir(alta->edCodigo(), QStringLiteral("0300"));
        escribir(alta->edCodigoPostal(), QStringLiteral("28013"));
        alta->btnAceptar()->click();
        return alta->result();
    });
    screen.btnNuevaSucursal()->click();
    EXPECT_EQ(contar(QStringLiteral("COMUN_SUCURSALES")), 6);
    EXPECT_EQ(contar(QStringLiteral("COMUN_SUCURSALES"), QStringLiteral("CODBANCO = '0049' AND CODSUCUR = '0300' AND "
                                                                         "DESSUCUR = 'MADRID SOL' AND CODPOSTAL = '28013'")),
              1);
    EXPECT_EQ(screen.sucursales().recordCount(), 4);
    EXPECT_EQ(actual(screen.sucursales(), "CODSUCUR"), QStringLiteral("0300")) << "on the new branch";
    EXPECT_EQ(screen.sucursales().recNo(), 0) << "in code order";

    // The same branch code under another bank is another branch.
    screen.buscarCodigoBanco()->setText(QStringLiteral("0182"));
    TfrmBancos::setModalRunner([&](QDialog& d) {
        auto* alta = qobject_cast<TfrmSucursal*>(&d);
        escribir(alta->edCodigo(), QStringLiteral("1001"));
        escribir(alta->edNombre(), QStringLiteral("MADRID GOYA"));
        EXPECT_TRUE(alta->aceptar());
        return alta->result();
    });
    screen.nuevaSucursal();
    EXPECT_EQ(contar(QStringLiteral("COMUN_SUCURSALES"), QStringLiteral("CODSUCUR = '1001'")), 2);
    EXPECT_EQ(screen.sucursales().recordCount(), 2);
}

TEST_F(Bancos, ModifyingAndDeletingABranch)
{
    test::ScriptedDialogs dialogs;
    TfrmBancos screen(data.dm());
    screen.sucursales().next(); // 2002
    TfrmBancos::setModalRunner([&](QDialog& d) {
        auto* alta = qobject_cast<TfrmSucursal*>(&d);
        EXPECT_FALSE(alta->esNuevo());
        EXPECT_FALSE(alta->edCodigo()->isEnabled());
        escribir(alta->edNombre(), QStringLiteral("BARCELONA PASEO DE GRACIA"));
        EXPECT_TRUE(alta->aceptar()) << "its own code is no duplicate";
        return alta->result();
    });
    screen.btnModificarSucursal()->click();
    EXPECT_EQ(texto(QStringLiteral("SELECT DESSUCUR FROM COMUN_SUCURSALES WHERE CODBANCO = '0049' AND CODSUCUR = '2002'")),
              QStringLiteral("BARCELONA PASEO DE GRACIA"));
    EXPECT_EQ(actual(screen.sucursales(), "CODSUCUR"), QStringLiteral("2002"));

    dialogs.answer(false);
    EXPECT_FALSE(screen.borrarSucursal());
    EXPECT_EQ(dialogs.texts(), QStringList{kConfirmar});
    dialogs.clear();
    EXPECT_EQ(contar(QStringLiteral("COMUN_SUCURSALES")), 5);

    dialogs.answer(true);
    EXPECT_TRUE(screen.borrarSucursal());
    EXPECT_EQ(dialogs.texts(), QStringList{kConfirmar});
    dialogs.clear();
    EXPECT_EQ(contar(QStringLiteral("COMUN_SUCURSALES"), QStringLiteral("CODSUCUR = '2002'")), 0);
    EXPECT_EQ(contar(QStringLiteral("COMUN_SUCURSALES")), 4);
    EXPECT_EQ(contar(QStringLiteral("COMUN_BANCOS")), 4);
    EXPECT_EQ(screen.sucursales().recordCount(), 2);
}

TEST_F(Bancos, ABankWithALongCodeListsItsBranchesWithoutError)
{
    Query::execute(data.dm().datos, data.dm().Transacion,
                   QStringLiteral("INSERT INTO COMUN_BANCOS (CODBANCO, DESBANCO, SWIFT) VALUES ('ABCDEF', 'EXTRANJERO', "
                                  "'EXTRDEFFXXX')"));
    data.dm().Transacion.commitRetaining();
    TfrmBancos screen(data.dm());
    screen.buscarCodigoBanco()->setText(QStringLiteral("ABC"));
    EXPECT_EQ(actual(screen.bancos(), "CODBANCO"), QStringLiteral("ABCDEF"));
    EXPECT_TRUE(screen.sucursales().isOpen());
    EXPECT_TRUE(screen.sucursales().isEmpty());
}

TEST_F(Bancos, TheRibbonsCommandOpensTheScreenModally)
{
    ui::commands().clear();
    lookups::registrarBancos();
    const ui::Command* c = ui::commands().find(QStringLiteral("bancos"));
    ASSERT_NE(c, nullptr);
    EXPECT_TRUE(c->factory);
    EXPECT_EQ(c->openAs, ui::OpenAs::Modal);

    QPointer<QDialog> vista;
    ui::commands().setModalRunner([&](QDialog* d) {
        vista = d;
        auto* screen = qobject_cast<TfrmBancos*>(d);
        EXPECT_NE(screen, nullptr);
        if (screen) {
            EXPECT_EQ(screen->windowTitle(), QStringLiteral("Bancos"));
            EXPECT_EQ(screen->bancos().recordCount(), 4);
        }
        d->close();
    });
    struct Anfitrion : ui::CommandHost {
        QWidget* hostWidget() override { return nullptr; }
        void showChild(QWidget*) override { ADD_FAILURE() << "modal, not a child window"; }
    } anfitrion;
    EXPECT_TRUE(ui::commands().run(QStringLiteral("bancos"), anfitrion));
    EXPECT_FALSE(vista.isNull());
    delete vista.data();
    ui::commands().clear();
}
