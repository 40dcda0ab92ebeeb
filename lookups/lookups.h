#pragma once

namespace tv {
class Tdm;
}

namespace tv::lookups {

// Adds the screens of this library to the program's command table: the
// code/description tables, municipalities, banks, the agency and the settings.
void registrarComandos();

} // namespace tv::lookups
