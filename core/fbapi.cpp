#include "fbapi.h"

namespace tv::fb {

Firebird::IMaster* master()
{
    static Firebird::IMaster* m = Firebird::fb_get_master_interface();
    return m;
}

Firebird::IUtil* util()
{
    static Firebird::IUtil* u = master()->getUtilInterface();
    return u;
}

Firebird::IProvider* provider()
{
    static Firebird::IProvider* p = master()->getDispatcher();
    return p;
}

Status::Status() : mWrapper(master()->getStatus()) {}

Status::~Status()
{
    mWrapper.dispose();
}

} // namespace tv::fb
