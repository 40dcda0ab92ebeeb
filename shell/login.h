#pragma once

#include <QString>

namespace tv {
class Tdm;
}

namespace tv::shell {

// The login rules, free of the dialog so they can be tested on data alone.
namespace login {

inline const QString kSqlCuantosUsuarios = QStringLiteral("SELECT COUNT(*) AS CUANTOS FROM AGENTES\n"
                                                          "WHERE USUARIO <>''");
inline const QString kSqlComprobar = QStringLiteral("SELECT COUNT(*) AS CUANTOS\n"
                                                    "FROM AGENTES\n"
                                                    "WHERE USUARIO =:USUARIO\n"
                                                    "AND CONTRASENA =:CONTRASENA");
inline const QString kSqlCodigo =
    QStringLiteral("select codigo from agentes a where a.usuario =:usuario and contrasena =:contrasena");

// Agents that have a user name; below 1 the dialog is skipped.
int cuantosUsuarios(Tdm& data);
// Agents whose user and password match exactly (the database compares,
// so case matters).
int coincidencias(Tdm& data, const QString& usuario, const QString& contrasena);
// The agent's code for that user and password (0 when none matches).
int codigoAgente(Tdm& data, const QString& usuario, const QString& contrasena);

} // namespace login

} // namespace tv::shell
