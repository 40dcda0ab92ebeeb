#include "finance.h"

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

} // namespace tv::finance
