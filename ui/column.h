#pragma once

#include <QList>
#include <QString>

#include <functional>

namespace tv::ui {

// The kinds of value a column holds, and so the control that edits it and
// the way a grid shows it.
enum class ColumnKind { Text, Integer, Number, Money, Date, Flag, Memo, RichText, Picture, Lookup };

// Rewrites what the user typed when he leaves the box (a NIF, a padded code).
using Normaliser = std::function<QString(const QString&)>;

// One column of a screen, described once: forms, grids and the search dialog
// are built from the same rows, so a caption or a length is never written twice.
struct Column {
    QString column;                  // field name in the data set
    QString caption;                 // what the user reads
    ColumnKind kind = ColumnKind::Text;
    QString lookup = {};             // Lookup: a catalogue name (lookupcatalogue.h) or a select of (code, description)
    QString remarkColumn = {};       // a flag or surface with its remark box beside it
    QString page = {};               // the tab page it sits on (empty: the screen's first)
    bool insertOnly = false;         // editable only while the row is being inserted
    int maxLength = 0;               // 0: the column's declared size
    Normaliser normaliser = {};      // applied when the user leaves the box
    QString required = {};           // message when it is empty on saving
    int width = 0;                   // grid width in characters (0: from the caption and the kind)
    bool inGrid = true;              // shown by default in a list
    bool searchable = true;          // offered in the search dialog (texts, numbers, dates)
};

using Columns = QList<Column>;

// The columns of a list that are named in `fields` (in that order).
Columns pick(const Columns& all, const QStringList& fields);
// The row describing `column` (nullptr when none does).
const Column* find(const Columns& all, const QString& column);

// Kept for the forms written before the column descriptions.
using FieldSpec = Column;
using FieldKind = ColumnKind;

} // namespace tv::ui
