#include "formbuilder.h"

#include "checkboxbinder.h"
#include "comboboxbinder.h"
#include "dataset.h"
#include "dateeditbinder.h"
#include "lineeditbinder.h"
#include "memobinder.h"
#include "richtextbinder.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace tv::ui {

FieldBinder* FormBuilder::create(const FieldSpec& spec, QWidget* parent)
{
    FieldBinder* b = nullptr;
    auto lineEdit = [&](LineEditBinder::Kind kind) {
        auto* e = new QLineEdit(parent);
        return new LineEditBinder(mDs, spec.column, e, kind);
    };
    switch (spec.kind) {
    case FieldKind::Text:
        b = lineEdit(LineEditBinder::Kind::Text);
        break;
    case FieldKind::Integer:
        b = lineEdit(LineEditBinder::Kind::Integer);
        break;
    case FieldKind::Number:
        b = lineEdit(LineEditBinder::Kind::Number);
        break;
    case FieldKind::Money:
        b = lineEdit(LineEditBinder::Kind::Money);
        break;
    case FieldKind::Flag:
        b = new CheckBoxBinder(mDs, spec.column, new QCheckBox(spec.caption, parent));
        break;
    case FieldKind::Date:
        b = new DateEditBinder(mDs, spec.column, new QDateEdit(parent));
        break;
    case FieldKind::Memo:
        b = new MemoBinder(mDs, spec.column, new QPlainTextEdit(parent));
        break;
    case FieldKind::RichText:
        b = new RichTextBinder(mDs, spec.column, new QTextEdit(parent));
        break;
    case FieldKind::Lookup: {
        auto* c = new ComboBoxBinder(mDs, spec.column, new QComboBox(parent));
        if (!spec.lookupSql.isEmpty())
            c->loadItems(mDs.database(), mDs.transaction(), spec.lookupSql, true);
        b = c;
        break;
    }
    }
    b->control()->setObjectName(spec.column.toUpper());
    return b;
}

QList<FieldBinder*> FormBuilder::build(QGridLayout* grid, const QList<FieldSpec>& specs, int columns)
{
    QList<FieldBinder*> out;
    columns = qMax(1, columns);
    QWidget* parent = grid->parentWidget();
    const int firstRow = grid->rowCount() == 1 && grid->count() == 0 ? 0 : grid->rowCount();
    for (int i = 0; i < specs.size(); ++i) {
        const FieldSpec& spec = specs.at(i);
        const int row = firstRow + i / columns;
        const int col = (i % columns) * 2;
        FieldBinder* b = create(spec, parent);
        if (spec.kind == FieldKind::Flag) {
            grid->addWidget(b->control(), row, col, 1, 2);
        } else {
            auto* label = new QLabel(spec.caption, parent);
            label->setBuddy(b->control());
            grid->addWidget(label, row, col, spec.kind == FieldKind::Memo || spec.kind == FieldKind::RichText
                                                   ? Qt::AlignTop | Qt::AlignLeft
                                                   : Qt::AlignVCenter | Qt::AlignLeft);
            grid->addWidget(b->control(), row, col + 1);
        }
        out.append(b);
    }
    return out;
}

} // namespace tv::ui
