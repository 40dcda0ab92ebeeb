#include "finance.h"

#include "commands.h"
#include "dialogs.h"
#include "frmcalculadora.h"
#include "frmfinanciacion.h"

namespace tv::finance {

void abrirCalculadoraHipotecaria(QWidget* parent)
{
    if (TfrmCalculadora::abierta()) {
        ui::dialogs().information(QString::fromUtf8(kVentanaAbierta), parent);
        return;
    }
    TfrmCalculadora frm(parent);
    frm.exec();
}

void abrirCuadroFinanciacion(QWidget* parent)
{
    TfrmFinanciacion frm(parent);
    frm.exec();
}

void registrarComandos()
{
    // Both keep their own rule for a second start, so they run as actions.
    ui::Command calculadora{QStringLiteral("calculadora-hipotecaria"), {}};
    calculadora.action = abrirCalculadoraHipotecaria;
    ui::commands().add(calculadora);
    ui::Command cuadro{QStringLiteral("cuadro-financiacion"), {}};
    cuadro.action = abrirCuadroFinanciacion;
    ui::commands().add(cuadro);
}

} // namespace tv::finance
