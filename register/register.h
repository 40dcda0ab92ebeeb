#pragma once

namespace tv::registro {

// Adds the registers' screens to the program's command table.
void registrarComandos();

} // namespace tv::registro
