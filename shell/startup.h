#pragma once

#include <QString>

namespace tv::shell {

// Small rules of the start sequence, kept apart from the window.
namespace startup {

// The documents folder: the local data folder unless CONFIGURACION.DOCU_RED
// is "S", when the network form of the data path is used.
QString carpetaDocumentos(const QString& docuRed, const QString& dataFolder, const QString& networkPath);
// The document templates of the application folder; Catalan gets "/cat".
QString carpetaPlantillas(const QString& appFolder, int idioma);
// Local mode: "libreria.dll" lies in the data folder.
bool modoLocal(const QString& dataFolder);
// "tejavista - USUARIO " + the user name.
QString tituloVentana(const QString& usuario);

} // namespace startup

} // namespace tv::shell
