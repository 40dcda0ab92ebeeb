#include "comboboxbinder.h"

#include "lookupcatalogue.h"
#include "query.h"

#include <QComboBox>
#include <QSignalBlocker>

namespace tv::ui {

namespace {

QString key(const QVariant& v)
{
    return (v.isValid() && !v.isNull()) ? v.toString().trimmed() : QString();
}

} // namespace

ComboBoxBinder::ComboBoxBinder(DataSet& dataSet, const QString& field, QComboBox* box)
    : FieldBinder(dataSet, field, box), mBox(box)
{
    box->setEditable(false);
    // activated() is the user's choice only; programmatic changes do not send it.
    connect(box, &QComboBox::activated, this, [this] { userChanged(); });
    refresh();
}

void ComboBoxBinder::loadItems(Database& db, Transaction& tr, const QString& sql, bool allowEmpty)
{
    QList<Item> items;
    Query q(db, tr, sql);
    for (q.open(); !q.eof(); q.next())
        items.append({q.field(0).value(), q.fieldCount() > 1 ? q.field(1).asString().trimmed() : q.field(0).asString()});
    q.close();
    setItems(items, allowEmpty);
}

void ComboBoxBinder::setItems(const QList<Item>& items, bool allowEmpty)
{
    {
        const QSignalBlocker block(mBox);
        mBox->clear();
        if (allowEmpty)
            mBox->addItem(QString(), QVariant());
        for (const Item& it : items)
            mBox->addItem(it.description, it.code);
    }
    refresh();
}

void ComboBoxBinder::setLookup(const QString& name, bool allowEmpty, const QString& parentField)
{
    mLookup = name;
    mAllowEmpty = allowEmpty;
    mParentField = parentField.toUpper();
    reloadLookup();
}

void ComboBoxBinder::reloadLookup()
{
    if (mLookup.isEmpty())
        return;
    QVariant parent;
    DataSet& ds = dataSet();
    if (!mParentField.isEmpty()) {
        const bool hasRow = ds.isOpen() && ds.recNo() >= 0 && ds.fieldIndex(mParentField) >= 0;
        parent = hasRow ? ds.fieldByName(mParentField).value() : QVariant();
        mParentShown = lookupKey(parent);
    }
    QList<Item> items;
    // With a parent field but no parent chosen there is nothing to choose from.
    if (mParentField.isEmpty() || !mParentShown.isEmpty())
        for (const LookupItem& i : lookups().items(ds.database(), ds.transaction(), mLookup, parent))
            items.append({i.code, i.description});
    setItems(items, mAllowEmpty);
}

void ComboBoxBinder::showValue(const QVariant& value)
{
    if (!mParentField.isEmpty()) {
        DataSet& ds = dataSet();
        const bool hasRow = ds.isOpen() && ds.recNo() >= 0 && ds.fieldIndex(mParentField) >= 0;
        const QString parent = hasRow ? lookupKey(ds.fieldByName(mParentField).value()) : QString();
        if (parent != mParentShown) {
            reloadLookup(); // shows the value again itself
            return;
        }
    }
    const QString wanted = key(value);
    int found = -1;
    for (int i = 0; i < mBox->count() && found < 0; ++i)
        if (key(mBox->itemData(i)) == wanted)
            found = i;
    mBox->setCurrentIndex(found);
}

QVariant ComboBoxBinder::controlValue() const
{
    const int i = mBox->currentIndex();
    return i < 0 ? QVariant() : mBox->itemData(i);
}

} // namespace tv::ui
