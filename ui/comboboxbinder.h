#pragma once

#include "fieldbinder.h"

#include <QList>

class QComboBox;

namespace tv {
class Database;
class Transaction;
}

namespace tv::ui {

// A drop-down on a code column whose items come from a lookup query: the
// box lists descriptions, the field stores the code. A code that is not in
// the list shows an empty box and is left as it is.
class ComboBoxBinder : public FieldBinder {
    Q_OBJECT
public:
    struct Item {
        QVariant code;
        QString description;
    };

    ComboBoxBinder(DataSet& dataSet, const QString& field, QComboBox* box);
    QComboBox* comboBox() const { return mBox; }

    // Items from a select whose first column is the code and the second the
    // description (e.g. "SELECT CODIGO, DESCRIPCION FROM ZONAS ORDER BY 2").
    // With allowEmpty, a blank first item stands for NULL.
    void loadItems(Database& db, Transaction& tr, const QString& sql, bool allowEmpty = false);
    void setItems(const QList<Item>& items, bool allowEmpty = false);
    // Items from a named catalogue of lookupcatalogue.h. With a parent field, only the
    // items of the parent value in the current row (a municipality's zones),
    // listed again whenever that value changes.
    void setLookup(const QString& name, bool allowEmpty = false, const QString& parentField = {});
    // Lists the catalogue again (after its table changed).
    void reloadLookup();

protected:
    void showValue(const QVariant& value) override;
    QVariant controlValue() const override;

private:
    QComboBox* mBox;
    QString mLookup;
    QString mParentField;
    QString mParentShown;
    bool mAllowEmpty = false;
};

} // namespace tv::ui
