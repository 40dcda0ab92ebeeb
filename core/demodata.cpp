#include "demodata.h"

#include "dm.h"

namespace tv {

// Being written: the synthetic agency generator.
void fillDemoAgency(Tdm&, quint32, const DemoSize&) {}

} // namespace tv
