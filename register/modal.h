#pragma once

#include <functional>

class QDialog;

namespace tv::registro {

// Runs the registers' own modal dialogs: exec() unless replaced, so tests
// fill a dialog in and accept it instead of waiting on a user.
int ejecutarModal(QDialog& dialog);
using EjecutorModal = std::function<int(QDialog&)>;
// An empty function restores exec().
void setEjecutorModal(EjecutorModal ejecutor);

} // namespace tv::registro
