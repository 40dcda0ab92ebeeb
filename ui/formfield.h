#pragma once

#include <QString>

namespace tv::ui {

// The kinds of bound control a form builder makes.
enum class FieldKind { Text, Integer, Number, Money, Flag, Date, Memo, RichText, Lookup };

// One row of a table-driven form: the column, the caption the user reads,
// the kind of control and, for lookups, the select that lists (code,
// description). Long groups of fields (sixty S/N features, ranges of
// numbers) are written as a list of these and built in one loop.
struct FieldSpec {
    QString column;
    QString caption;
    FieldKind kind = FieldKind::Text;
    QString lookupSql = {};
};

} // namespace tv::ui
