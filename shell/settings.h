#pragma once

#include <QString>

namespace tv::shell {

// The user's choices kept between runs (QSettings, organisation and
// application "tejavista"), each with its default beside it.
namespace settings {

// Language of the ribbon's language box: 0 Castellano (default), 1 Catalán.
int idioma();
void setIdioma(int index);

// Background picture of the main window: a file name in fondos/, or empty
// for the plain background. Default "azul.jpg".
QString fondo();
void setFondo(const QString& fileName);

} // namespace settings

} // namespace tv::shell
