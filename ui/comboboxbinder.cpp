#include "comboboxbinder.h"

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

void ComboBoxBinder::showValue(const QVariant& value)
{
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
