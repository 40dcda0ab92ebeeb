#include "comandos.h"

#include "finance.h"
#include "lookups.h"

namespace tv::shell {

void registrarComandosDeLasPantallas()
{
    finance::registrarComandos();
    lookups::registrarComandos();
}

} // namespace tv::shell
