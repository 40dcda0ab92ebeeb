#include "formbuilder.h"

#include "checkboxbinder.h"
#include "comboboxbinder.h"
#include "dataset.h"
#include "dateeditbinder.h"
#include "lineeditbinder.h"
#include "memobinder.h"
#include "picturebinder.h"
#include "richtextbinder.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QGridLayout>
#include <QHBoxLayout>
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
        if (spec.lookup.trimmed().startsWith(QLatin1String("SELECT"), Qt::CaseInsensitive))
            c->loadItems(mDs.database(), mDs.transaction(), spec.lookup, true);
        else if (!spec.lookup.isEmpty())
            c->setLookup(spec.lookup, true);
        b = c;
        break;
    }
    case FieldKind::Picture:
        b = new PictureBinder(mDs, spec.column, new QLabel(parent));
        break;
    }
    b->control()->setObjectName(spec.column.toUpper());
    applyColumnRules(b, spec);
    return b;
}

void FormBuilder::applyColumnRules(FieldBinder* b, const Column& spec)
{
    auto* edit = qobject_cast<QLineEdit*>(b->control());
    if (edit) {
        int length = spec.maxLength;
        const int index = mDs.fieldIndex(spec.column);
        if (length <= 0 && index >= 0 && mDs.isOpen()) {
            const FieldInfo info = mDs.fieldInfo(index);
            if (info.type == FieldInfo::Type::Text)
                length = info.size;
        }
        if (length > 0 && (spec.kind == ColumnKind::Text || spec.kind == ColumnKind::Integer))
            edit->setMaxLength(length);
        if (spec.normaliser) {
            // On leaving the box: the normalised value replaces what was typed,
            // only while the record is being edited (browsing never writes).
            QObject::connect(edit, &QLineEdit::editingFinished, b, [b, edit, normaliser = spec.normaliser] {
                if (!b->hasDataSet())
                    return;
                DataSet& ds = b->dataSet();
                if (!ds.isEditing())
                    return;
                const QString typed = edit->text();
                const QString normal = normaliser(typed);
                if (normal == typed)
                    return;
                ds.fieldByName(b->fieldName()).setValue(normal.isEmpty() ? QVariant() : QVariant(normal));
                b->refresh();
            });
        }
    }
    if (spec.insertOnly) {
        // Keys and other columns fixed once the row exists.
        auto follow = [b] {
            if (!b->hasDataSet())
                return;
            if (QWidget* w = b->control())
                w->setEnabled(b->dataSet().state() == DataSet::State::Insert);
        };
        QObject::connect(&mDs, &DataSet::stateChanged, b, follow);
        QObject::connect(&mDs, &DataSet::currentChanged, b, follow);
        QObject::connect(&mDs, &DataSet::reset, b, follow);
        follow();
    }
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
        if (!spec.remarkColumn.isEmpty()) {
            // A flag or a surface with its remark box beside it.
            FieldBinder* remark = create(Column{spec.remarkColumn, spec.caption}, parent);
            if (spec.kind == FieldKind::Flag) {
                grid->addWidget(b->control(), row, col);
            } else if (columns == 1) {
                // One field per row: caption, value and remark in three
                // columns, so the values line up under each other.
                auto* label = new QLabel(spec.caption, parent);
                label->setBuddy(b->control());
                grid->addWidget(label, row, 0);
                grid->addWidget(b->control(), row, 1);
                grid->addWidget(remark->control(), row, 2);
                out.append(b);
                out.append(remark);
                continue;
            } else {
                auto* label = new QLabel(spec.caption, parent);
                label->setBuddy(b->control());
                auto* pair = new QHBoxLayout;
                pair->addWidget(label);
                pair->addWidget(b->control());
                grid->addLayout(pair, row, col);
            }
            grid->addWidget(remark->control(), row, col + 1);
            out.append(b);
            out.append(remark);
            continue;
        }
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
