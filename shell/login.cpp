#include "login.h"

#include "dm.h"

namespace tv::shell::login {

int cuantosUsuarios(Tdm& data)
{
    Query q(data.datos, data.Transacion, kSqlCuantosUsuarios);
    q.open();
    return q.fieldByName(QStringLiteral("CUANTOS")).asInteger();
}

int coincidencias(Tdm& data, const QString& usuario, const QString& contrasena)
{
    Query q(data.datos, data.Transacion, kSqlComprobar);
    q.paramByName(QStringLiteral("USUARIO")).setAsString(usuario);
    q.paramByName(QStringLiteral("CONTRASENA")).setAsString(contrasena);
    q.open();
    return q.fieldByName(QStringLiteral("CUANTOS")).asInteger();
}

int codigoAgente(Tdm& data, const QString& usuario, const QString& contrasena)
{
    Query q(data.datos, data.Transacion, kSqlCodigo);
    q.paramByName(QStringLiteral("usuario")).setAsString(usuario);
    q.paramByName(QStringLiteral("contrasena")).setAsString(contrasena);
    q.open();
    return q.eof() ? 0 : q.field(0).asInteger();
}

} // namespace tv::shell::login
