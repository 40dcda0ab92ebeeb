#include "locatebox.h"

#include "dataset.h"
#include "dialogs.h"

namespace tv::ui {

LocateBox::LocateBox(DataSet& dataSet, const QString& field, QWidget* parent)
    : QLineEdit(parent), mDs(&dataSet), mField(field.toUpper())
{
    setClearButtonEnabled(true);
    connect(this, &QLineEdit::textChanged, this, &LocateBox::locateText);
}

bool LocateBox::locateText()
{
    if (!mDs || !mDs->isOpen() || mDs->isEditing() || text().isEmpty())
        return false;
    try {
        return mDs->locate(mField, text(), DataSet::CaseInsensitive | DataSet::PartialKey);
    } catch (const PendingChangesError&) {
        // A detail with changes not yet saved holds the master where it is;
        // the detail's own screen tells the user when he tries to leave.
    } catch (const Abort&) {
        // A beforeScroll hook kept the row; it said why if it had to.
    } catch (const DatabaseError& e) {
        dialogs().error(e.message(), this);
    }
    return false;
}

} // namespace tv::ui
