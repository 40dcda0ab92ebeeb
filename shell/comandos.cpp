#include "comandos.h"

#include "finance.h"
#include "lookups.h"
#include "register.h"

namespace tv::shell {

void registrarComandosDeLasPantallas()
{
    finance::registrarComandos();
    lookups::registrarComandos();
    registro::registrarComandos();
}

} // namespace tv::shell
