#include "register.h"

#include "dialogs.h"
#include "dm.h"
#include "enlaces.h"
#include "frminmuebles.h"
#include "frmverpropietario.h"
#include "modal.h"

namespace tv::registro {

void registrarComandos()
{
    registrarInmuebles();
    // Until the owner register exists, an owner is shown read only.
    registrarEnlace(QStringLiteral("propietario"), [](QWidget* parent, const QVariant& codigo) {
        TfrmVerPropietario dlg(*dm, codigo, parent);
        if (!dlg.encontrado()) {
            ui::dialogs().information(QStringLiteral("El propietario %1 no existe.").arg(codigo.toString()), parent);
            return;
        }
        ejecutarModal(dlg);
    });
}

} // namespace tv::registro
