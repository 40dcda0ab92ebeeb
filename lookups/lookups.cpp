#include "lookups.h"

#include "commands.h"
#include "dm.h"
#include "frmbancos.h"
#include "frmagentes.h"
#include "frmconfigura.h"
#include "frmempresa.h"
#include "frmmunicipio.h"
#include "lookupcatalogue.h"
#include "tablaauxiliar.h"

namespace tv::lookups {

void registrarComandos()
{
    // The record sheets a family prints with.
    ui::lookups().define({QStringLiteral("plantillas"), QString(),
                          QStringLiteral("SELECT 1, 'Piso' FROM RDB$DATABASE UNION ALL SELECT 2, 'Casa' FROM RDB$DATABASE "
                                         "UNION ALL SELECT 4, 'Nave' FROM RDB$DATABASE UNION ALL SELECT 5, 'Local' FROM RDB$DATABASE "
                                         "UNION ALL SELECT 6, 'Parking' FROM RDB$DATABASE UNION ALL SELECT 7, 'Solar' FROM RDB$DATABASE "
                                         "UNION ALL SELECT 8, 'Edificio' FROM RDB$DATABASE UNION ALL SELECT 9, 'Rústica' FROM RDB$DATABASE")});
    for (const TablaDef& def : tablasAuxiliares()) {
        ui::Command c;
        c.id = def.comando;
        c.factory = [def](QWidget* parent) -> QWidget* { return new TablaAuxiliar(*dm, def, parent); };
        if (def.soloAdministradores)
            c.allowed = [](QWidget* parent) { return puedeAbrirPantallaDeAdministrador(*dm, parent); };
        ui::commands().add(c);
    }
    registrarEmpresa();
    registrarConfiguracion();
    registrarMunicipios();
    registrarBancos();
    registrarAgentes();
}

} // namespace tv::lookups
