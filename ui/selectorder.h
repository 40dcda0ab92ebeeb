#pragma once

#include <QString>

namespace tv::ui {

// The ORDER BY of a select, found in its text: words at parenthesis depth 0,
// literals and comments never read as words.

// Where a select's ordering sits: "ORDER" at orderStart (-1 when none), its
// terms from termsStart, and what follows them (ROWS, FOR UPDATE...) from tailStart.
struct OrderSpan {
    int orderStart = -1;
    int termsStart = -1;
    int tailStart = -1;
};

OrderSpan findOrder(const QString& sql);
// The text trimmed, without its closing semicolons.
QString withoutTrailingSemicolon(const QString& sql);

} // namespace tv::ui
