#pragma once

#include <QLineEdit>
#include <QPointer>

namespace tv {
class DataSet;
}

namespace tv::ui {

// A box that moves a data set, and so any grid following it, to the first
// row whose field starts with what is typed (case-insensitive), on every
// change of its text. An empty box leaves the row where it is, and so does a
// data set being edited: locating must never post or drop what is typed.
class LocateBox : public QLineEdit {
    Q_OBJECT
public:
    LocateBox(DataSet& dataSet, const QString& field, QWidget* parent = nullptr);

    DataSet* dataSet() const { return mDs; }
    QString fieldName() const { return mField; }

public Q_SLOTS:
    // Locates the text now; true when a row was found.
    bool locateText();

private:
    QPointer<DataSet> mDs;
    QString mField;
};

} // namespace tv::ui
