#pragma once

namespace tv::shell {

// Fills the command table with every library's screens (one call per
// library, never one per screen). Safe to call more than once.
void registrarComandosDeLasPantallas();

} // namespace tv::shell
