#include "fieldbinder.h"

#include "dialogs.h"

namespace tv::ui {

FieldBinder::FieldBinder(DataSet& dataSet, const QString& field, QWidget* control)
    : QObject(control), mDs(&dataSet), mField(field.toUpper()), mControl(control)
{
    connect(&dataSet, &DataSet::currentChanged, this, &FieldBinder::refresh);
    connect(&dataSet, &DataSet::reset, this, &FieldBinder::refresh);
    connect(&dataSet, &DataSet::stateChanged, this, &FieldBinder::refresh);
    connect(&dataSet, &DataSet::rowChanged, this, [this](int row) {
        if (mDs && row == mDs->recNo())
            refresh();
    });
}

FieldBinder::~FieldBinder() = default;

void FieldBinder::refresh()
{
    // A value this binder is writing comes back through rowChanged; showing
    // it again would move the cursor under the user's fingers.
    if (mWriting || !mControl || !mDs)
        return;
    QVariant v;
    const bool hasRow = mDs->isOpen() && mDs->recNo() >= 0 && mDs->fieldIndex(mField) >= 0;
    if (hasRow)
        v = mDs->fieldByName(mField).value();
    mShowing = true;
    showValue(v);
    mShowing = false;
}

void FieldBinder::userChanged()
{
    if (mShowing || !mDs)
        return;
    mWriting = true;
    bool ok = false;
    try {
        if (!mDs->isEditing())
            mDs->edit();
        mDs->fieldByName(mField).setValue(controlValue());
        ok = true;
    } catch (const Abort&) {
        // A hook refused: the data set stands as before, and so must the control.
    } catch (const DataSetError&) {
        // A closed data set: there is nothing to write into.
    } catch (const DatabaseError& e) {
        // A hook that reads the database failed (a new key, a lock).
        mWriting = false;
        dialogs().error(e.message(), mControl);
    }
    mWriting = false;
    if (ok)
        Q_EMIT edited(mField);
    else
        refresh();
}

} // namespace tv::ui
