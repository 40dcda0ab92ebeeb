#include "appstate.h"
#include "frmentrada.h"
#include "login.h"
#include "passwordedit.h"
#include "scripteddialogs.h"
#include "testdata.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest/QTest>
#include <gtest/gtest.h>

using namespace tv;
using tv::shell::TfrmEntrada;

namespace {

void addAgent(Tdm& dm, int code, const QString& user, const QString& password, const QString& admin = QStringLiteral("N"))
{
    Query q(dm.datos, dm.Transacion,
            QStringLiteral("INSERT INTO AGENTES (CODIGO, APEYNOM, USUARIO, CONTRASENA, ADMINISTRADOR, OCULTARCLIENTES) "
                           "VALUES (:C, :N, :U, :P, :A, 'S')"));
    q.paramByName(QStringLiteral("C")).setAsInteger(code);
    q.paramByName(QStringLiteral("N")).setAsString(QStringLiteral("AGENTE ") + user);
    q.paramByName(QStringLiteral("U")).setValue(user.isNull() ? QVariant() : QVariant(user));
    q.paramByName(QStringLiteral("P")).setAsString(password);
    q.paramByName(QStringLiteral("A")).setAsString(admin);
    q.exec();
}

} // namespace

TEST(Login, SqlTextsAreTheSystemOnes)
{
    EXPECT_EQ(shell::login::kSqlCuantosUsuarios, QStringLiteral("SELECT COUNT(*) AS CUANTOS FROM AGENTES\nWHERE USUARIO <>''"));
    EXPECT_EQ(shell::login::kSqlComprobar, QStringLiteral("SELECT COUNT(*) AS CUANTOS\nFROM AGENTES\n"
                                                          "WHERE USUARIO =:USUARIO\nAND CONTRASENA =:CONTRASENA"));
    EXPECT_EQ(shell::login::kSqlCodigo,
              QStringLiteral("select codigo from agentes a where a.usuario =:usuario and contrasena =:contrasena"));
}

TEST(Login, SkippedWhenNoAgentHasAUserName)
{
    test::TestData data;
    test::ScriptedDialogs dialogs;
    addAgent(data.dm(), 3, QString(), QStringLiteral("x"));
    addAgent(data.dm(), 4, QStringLiteral(""), QStringLiteral("y"));
    ui::appState().reset();
    bool shown = false;
    EXPECT_TRUE(TfrmEntrada::entrar(data.dm(), nullptr, [&](TfrmEntrada&) {
        shown = true;
        return int(QDialog::Rejected);
    }));
    EXPECT_FALSE(shown);
    EXPECT_EQ(data.dm().agente.codigo, 0);
    EXPECT_EQ(data.dm().agente.usuario, QStringLiteral("TODOS"));
    EXPECT_TRUE(data.dm().agente.administrador);
    EXPECT_EQ(ui::appState().agentCode, 0);
    EXPECT_EQ(ui::appState().agentUser, QStringLiteral("TODOS"));
    EXPECT_TRUE(dialogs.log().isEmpty());
}

TEST(Login, MessagesInOrderThenTheRightAgentLogsIn)
{
    test::TestData data;
    test::ScriptedDialogs dialogs;
    addAgent(data.dm(), 5, QStringLiteral("marta"), QStringLiteral("Clave1"));
    addAgent(data.dm(), 9, QStringLiteral("pablo"), QStringLiteral("secreto"));
    ui::appState().reset();

    QStringList afterEachClick;
    const bool ok = TfrmEntrada::entrar(data.dm(), nullptr, [&](TfrmEntrada& dlg) {
        dlg.btnAceptarClick(); // both empty
        afterEachClick.append(QString::number(dlg.result()));
        dlg.edUsuario()->setText(QStringLiteral("marta"));
        dlg.btnAceptarClick(); // no password
        dlg.edContrasena()->setText(QStringLiteral("clave1"));
        dlg.btnAceptarClick(); // wrong case
        dlg.edContrasena()->setText(QStringLiteral("otra"));
        dlg.btnAceptarClick(); // wrong password
        EXPECT_NE(dlg.result(), int(QDialog::Accepted)) << "a wrong password stays in the dialog";
        dlg.edUsuario()->setText(QStringLiteral("MARTA"));
        dlg.edContrasena()->setText(QStringLiteral("Clave1"));
        dlg.btnAceptarClick(); // the user name is compared exactly too
        dlg.edUsuario()->setText(QStringLiteral("marta"));
        dlg.btnAceptarClick();
        return dlg.result();
    });
    EXPECT_TRUE(ok);
    EXPECT_EQ(dialogs.texts(), (QStringList{QStringLiteral("Debe indicar el usuario y la contraseña de acceso"),
                                            QStringLiteral("Debe indicar el usuario y la contraseña de acceso"),
                                            QStringLiteral("Contraseña incorrecta"),
                                            QStringLiteral("Contraseña incorrecta"),
                                            QStringLiteral("Contraseña incorrecta")}));
    for (const auto& e : dialogs.log())
        EXPECT_EQ(e.kind, test::ScriptedDialogs::Kind::Warning);
    EXPECT_EQ(data.dm().agente.codigo, 5);
    EXPECT_EQ(data.dm().agente.usuario, QStringLiteral("marta"));
    EXPECT_FALSE(data.dm().agente.administrador);
    EXPECT_TRUE(data.dm().agente.ocultarClientes);
    EXPECT_EQ(ui::appState().agentCode, 5);
    EXPECT_EQ(ui::appState().agentUser, QStringLiteral("marta"));
}

TEST(Login, EmptyFieldsPutTheFocusInTheUserBox)
{
    test::TestData data;
    test::ScriptedDialogs dialogs;
    addAgent(data.dm(), 1, QStringLiteral("ana"), QStringLiteral("a1"));
    TfrmEntrada dlg(data.dm());
    dlg.show();
    dlg.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dlg));
    EXPECT_TRUE(dlg.edUsuario()->hasFocus()) << "focus in the user box on show";
    dlg.edContrasena()->setFocus();
    dlg.btnAceptarClick();
    EXPECT_TRUE(dlg.edUsuario()->hasFocus());
    EXPECT_EQ(dialogs.texts(), QStringList{QStringLiteral("Debe indicar el usuario y la contraseña de acceso")});
    dlg.Timer1Timer();
    EXPECT_TRUE(dlg.edUsuario()->hasFocus());
}

TEST(Login, CancelEndsWithoutSuccess)
{
    test::TestData data;
    test::ScriptedDialogs dialogs;
    addAgent(data.dm(), 1, QStringLiteral("ana"), QStringLiteral("a1"));
    const bool ok = TfrmEntrada::entrar(data.dm(), nullptr, [](TfrmEntrada& dlg) {
        dlg.edUsuario()->setText(QStringLiteral("ana"));
        dlg.edContrasena()->setText(QStringLiteral("a1"));
        dlg.btnCancelar()->click();
        return dlg.result();
    });
    EXPECT_FALSE(ok);
    EXPECT_TRUE(dialogs.log().isEmpty());
}

TEST(Login, SpaceInThePasswordDeletesAndEnterPressesAceptar)
{
    test::TestData data;
    test::ScriptedDialogs dialogs;
    addAgent(data.dm(), 2, QStringLiteral("luis"), QStringLiteral("ac"));
    TfrmEntrada dlg(data.dm());
    dlg.show();
    dlg.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dlg));
    QTest::keyClicks(dlg.edUsuario(), QStringLiteral("luis"));
    dlg.edContrasena()->setFocus();
    QTest::keyClicks(dlg.edContrasena(), QStringLiteral("ab c"));
    EXPECT_EQ(dlg.contrasena(), QStringLiteral("ac")) << "the space took the b away";
    QTest::keyClick(dlg.edContrasena(), Qt::Key_Space);
    QTest::keyClick(dlg.edContrasena(), Qt::Key_Space);
    EXPECT_EQ(dlg.contrasena(), QString());
    QTest::keyClicks(dlg.edContrasena(), QStringLiteral("ac"));
    QGuiApplication::clipboard()->setText(QStringLiteral(" "));
    dlg.edContrasena()->paste();
    EXPECT_EQ(dlg.contrasena(), QStringLiteral("ac")) << "a pasted space is dropped";

    QTest::keyClick(dlg.edContrasena(), Qt::Key_Return);
    EXPECT_EQ(dlg.result(), int(QDialog::Accepted));
    EXPECT_TRUE(dialogs.log().isEmpty());
}
