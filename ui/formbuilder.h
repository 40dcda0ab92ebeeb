#pragma once

#include "column.h"

#include <QList>

class QGridLayout;
class QWidget;

namespace tv {
class DataSet;
}

namespace tv::ui {

class FieldBinder;

// Builds bound controls from a table of FieldSpec rows into a grid:
// `columns` fields per grid row; a field is a caption label and its control,
// a flag is one check box carrying its caption. Controls are named after
// their column (objectName), so screens and tests can find them.
class FormBuilder {
public:
    explicit FormBuilder(DataSet& dataSet) : mDs(dataSet) {}

    QList<FieldBinder*> build(QGridLayout* grid, const QList<FieldSpec>& specs, int columns = 1);
    // One control and its binder, owned by parent.
    FieldBinder* create(const FieldSpec& spec, QWidget* parent);

private:
    // Maximum length, normaliser on leaving the box, editable only while inserting.
    void applyColumnRules(FieldBinder* b, const Column& spec);
    DataSet& mDs;
};

} // namespace tv::ui
