#include "column.h"

#include <QStringList>

namespace tv::ui {

const Column* find(const Columns& all, const QString& column)
{
    for (const Column& c : all)
        if (c.column.compare(column, Qt::CaseInsensitive) == 0)
            return &c;
    return nullptr;
}

Columns pick(const Columns& all, const QStringList& fields)
{
    Columns out;
    for (const QString& f : fields)
        if (const Column* c = find(all, f))
            out.append(*c);
    return out;
}

} // namespace tv::ui
