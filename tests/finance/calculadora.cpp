// The mortgage calculator: the keypad rules, the three checks in order with
// their texts and focus, the result, and the one-window rule.
#include "calculadora.h"
#include "campoimporte.h"
#include "finance.h"
#include "frmcalculadora.h"
#include "scripteddialogs.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <gtest/gtest.h>

using namespace tv::finance;
using tv::Money;
using tv::test::ScriptedDialogs;

TEST(Calculadora, KeypadAppendsAtMostTenDigits)
{
    QString t;
    for (int d : {1, 2, 3, 4, 5, 6, 7, 8, 9, 0})
        t = anadirDigito(t, d);
    EXPECT_EQ(t, QStringLiteral("1234567890"));
    // An eleventh digit does nothing, a zero neither.
    EXPECT_EQ(anadirDigito(t, 7), t);
    EXPECT_EQ(anadirDigito(t, 0), t);
    EXPECT_EQ(anadirDigito(QStringLiteral("123456789"), 9), QStringLiteral("1234567899"));
}

TEST(Calculadora, KeypadNeverStartsWithZero)
{
    EXPECT_EQ(anadirDigito(QString(), 0), QString());
    EXPECT_EQ(anadirDigito(QString(), 5), QStringLiteral("5"));
    EXPECT_EQ(anadirDigito(QStringLiteral("5"), 0), QStringLiteral("50"));
    EXPECT_EQ(anadirDigito(QStringLiteral("50"), 0), QStringLiteral("500"));
    // Not a digit: nothing.
    EXPECT_EQ(anadirDigito(QStringLiteral("5"), 10), QStringLiteral("5"));
    EXPECT_EQ(anadirDigito(QStringLiteral("5"), -1), QStringLiteral("5"));
}

TEST(Calculadora, ChecksInOrder)
{
    const Money cien = Money::fromUnits(100000);
    const Money tres = Money::fromUnits(3);
    EXPECT_EQ(datoQueFalta(Money(), 0, Money()), DatoCalculadora::Importe);
    EXPECT_EQ(datoQueFalta(Money::fromUnits(-1), 25, tres), DatoCalculadora::Importe);
    EXPECT_EQ(datoQueFalta(cien, 0, Money()), DatoCalculadora::Plazo);
    EXPECT_EQ(datoQueFalta(cien, 25, Money()), DatoCalculadora::Interes);
    EXPECT_EQ(datoQueFalta(cien, 25, Money::fromUnits(-1)), DatoCalculadora::Interes);
    EXPECT_EQ(datoQueFalta(cien, 25, tres), DatoCalculadora::Ninguno);
    EXPECT_EQ(mensajeDatoQueFalta(DatoCalculadora::Importe), QStringLiteral("Debe indicar el importe solicitado"));
    EXPECT_EQ(mensajeDatoQueFalta(DatoCalculadora::Plazo), QStringLiteral("Debe el plazo de amortización"));
    EXPECT_EQ(mensajeDatoQueFalta(DatoCalculadora::Interes), QStringLiteral("Debe indicar el tipo de interes"));
    EXPECT_EQ(mensajeDatoQueFalta(DatoCalculadora::Ninguno), QString());
}

TEST(Calculadora, ScreenDigitButtonsAndBorrar)
{
    TfrmCalculadora frm;
    frm.botonDigito(0)->click();
    EXPECT_EQ(frm.edImporte()->text(), QString());
    for (int d : {1, 0, 0, 0, 0, 0})
        frm.botonDigito(d)->click();
    EXPECT_EQ(frm.edImporte()->text(), QStringLiteral("100000"));
    for (int d : {0, 0, 0, 0, 5})
        frm.btnDigitoClick(d);
    EXPECT_EQ(frm.edImporte()->text(), QStringLiteral("1000000000"));
    frm.btnDigitoClick(5);
    EXPECT_EQ(frm.edImporte()->text(), QStringLiteral("1000000000"));
    frm.findChild<QPushButton*>(QStringLiteral("btnBorrar"))->click();
    EXPECT_EQ(frm.edImporte()->text(), QString());
}

TEST(Calculadora, ScreenTypingFollowsTheKeypadRules)
{
    TfrmCalculadora frm;
    frm.show();
    QTest::keyClicks(frm.edImporte(), "0123");
    EXPECT_EQ(frm.edImporte()->text(), QStringLiteral("123"));
    frm.edImporte()->clear();
    QTest::keyClicks(frm.edImporte(), "123456789012");
    EXPECT_EQ(frm.edImporte()->text(), QStringLiteral("1234567890"));
}

TEST(Calculadora, ScreenMessagesInOrderThenTheInstalment)
{
    ScriptedDialogs dialogs;
    TfrmCalculadora frm;
    frm.show();
    QApplication::setActiveWindow(&frm);

    frm.btnCalcularClick();
    EXPECT_EQ(frm.focusWidget(), frm.edImporte());
    for (int d : {1, 0, 0, 0, 0, 0})
        frm.btnDigitoClick(d);
    frm.btnCalcularClick();
    EXPECT_EQ(frm.focusWidget(), frm.edAnos());
    frm.edAnos()->setValue(25);
    frm.btnCalcularClick();
    EXPECT_EQ(frm.focusWidget(), frm.edInteres());
    EXPECT_EQ(frm.edCuota()->text(), QString());

    ASSERT_EQ(dialogs.log().size(), 3);
    EXPECT_EQ(dialogs.texts(), QStringList({QStringLiteral("Debe indicar el importe solicitado"),
                                            QStringLiteral("Debe el plazo de amortización"),
                                            QStringLiteral("Debe indicar el tipo de interes")}));
    for (const auto& e : dialogs.log())
        EXPECT_EQ(e.kind, ScriptedDialogs::Kind::Information);

    frm.edInteres()->setText(QStringLiteral("3"));
    frm.btnCalcularClick();
    EXPECT_EQ(dialogs.log().size(), 3);
    EXPECT_EQ(frm.edCuota()->text(), QStringLiteral("474,21 €"));

    // A changed figure takes the old result away.
    frm.edAnos()->setValue(10);
    EXPECT_EQ(frm.edCuota()->text(), QString());
    frm.btnCalcularClick();
    EXPECT_EQ(frm.edCuota()->text(), QStringLiteral("965,61 €"));
}

TEST(Calculadora, RateShownWithTwoDecimalsAndPercent)
{
    TfrmCalculadora frm;
    frm.edInteres()->setValue(Money::fromRaw(32500));
    EXPECT_EQ(frm.edInteres()->text(), QStringLiteral("3,25 %"));
    frm.edInteres()->setText(QStringLiteral("4,5"));
    frm.edInteres()->reformat();
    EXPECT_EQ(frm.edInteres()->text(), QStringLiteral("4,50 %"));
    EXPECT_EQ(frm.edInteres()->value(), Money::fromRaw(45000));
}

TEST(Calculadora, SecondWindowIsRefused)
{
    ScriptedDialogs dialogs;
    {
        TfrmCalculadora primera;
        EXPECT_TRUE(TfrmCalculadora::abierta());
        abrirCalculadoraHipotecaria(nullptr);  // returns at once: nothing else opens
        ASSERT_EQ(dialogs.log().size(), 1);
        EXPECT_EQ(dialogs.log().first().kind, ScriptedDialogs::Kind::Information);
        EXPECT_EQ(dialogs.log().first().text, QStringLiteral("La ventana ya está abierta, debe cerrar la ventana actual"));
        int calculadoras = 0;
        for (QWidget* w : QApplication::topLevelWidgets())
            calculadoras += qobject_cast<TfrmCalculadora*>(w) != nullptr;
        EXPECT_EQ(calculadoras, 1);
    }
    EXPECT_FALSE(TfrmCalculadora::abierta());
}
