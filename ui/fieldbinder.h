#pragma once

#include "dataset.h"

#include <QObject>
#include <QPointer>
#include <QVariant>
#include <QWidget>

namespace tv::ui {

// Ties one control to one field of a DataSet, both ways:
// - the control shows the field of the current row, again whenever the row
//   changes, the row's values change or the data set is reopened;
// - typing into the control puts the data set in edit (which runs its
//   beforeEdit hook) and writes the field. When a hook refuses (tv::Abort)
//   or the data set cannot edit, the control goes back to the field's value.
// Subclasses know one kind of control: how to show a value and how to read it.
class FieldBinder : public QObject {
    Q_OBJECT
public:
    FieldBinder(DataSet& dataSet, const QString& field, QWidget* control);
    ~FieldBinder() override;

    DataSet& dataSet() const { return *mDs; }
    // False once the data set is gone (a screen being torn down).
    bool hasDataSet() const { return !mDs.isNull(); }
    QString fieldName() const { return mField; }
    QWidget* control() const { return mControl; }

    // Shows the field's current value (an empty value without a row).
    void refresh();

Q_SIGNALS:
    // The user changed the value and it reached the data set.
    void edited(const QString& field);

protected:
    virtual void showValue(const QVariant& value) = 0;
    virtual QVariant controlValue() const = 0;
    // Subclasses call this from the control's "changed by the user" signal.
    void userChanged();
    // True while the binder itself writes into the control.
    bool isShowing() const { return mShowing; }

private:
    QPointer<DataSet> mDs;
    QString mField;
    QPointer<QWidget> mControl;
    bool mShowing = false;
    bool mWriting = false;
};

} // namespace tv::ui
