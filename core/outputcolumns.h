#pragma once

// How a statement's output message is laid out and what each column is; for
// Query, not part of core's interface.

#include "fbapi.h"
#include "query.h"
#include "rowbuffer.h"

#include <vector>

namespace tv {

struct OutputColumn {
    ColumnLayout layout;
    FieldInfo info;
};

std::vector<OutputColumn> describeOutput(fb::Status& st, Firebird::IMessageMetadata* meta);

} // namespace tv
