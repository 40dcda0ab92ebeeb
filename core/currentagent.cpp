#include "currentagent.h"

#include "query.h"
#include "sqltext.h"

namespace tv {

CurrentAgent CurrentAgent::load(Database& db, Transaction& tr, int codigo)
{
    CurrentAgent a;
    if (codigo < 1)
        return a;
    a.codigo = codigo;
    a.usuario.clear();
    a.administrador = false;
    Query q(db, tr, QStringLiteral(" SELECT * FROM AGENTES WHERE CODIGO =:CODIGO "));
    q.paramByName(QStringLiteral("CODIGO")).setAsInteger(codigo);
    q.open();
    if (q.eof())
        return a;
    a.usuario = q.fieldByName(QStringLiteral("USUARIO")).asString().trimmed();
    auto flag = [&](const char* column) { return sql::isSet(q.fieldByName(QLatin1String(column)).value()); };
    a.ocultarDatosEconomicos = flag("OCULTARDATOSECONOMICOS");
    a.verSoloSusGestiones = flag("VERSOLOSUSGESTIONES");
    a.verSoloSuAgenda = flag("VERSOLOSUAGENDA");
    a.ocultarDatosInternos = flag("OCULTARDATOSINTERNOS");
    a.ocultarClientes = flag("OCULTARCLIENTES");
    a.ocultarPropietarios = flag("OCULTASPROPIETARIOS");
    a.administrador = flag("ADMINISTRADOR");
    return a;
}

} // namespace tv
