#include "codesearchbinder.h"

#include "dataset.h"
#include "dialogs.h"
#include "query.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QToolButton>

#include <limits>

namespace tv::ui {

namespace {

bool isNull(const QVariant& v)
{
    return !v.isValid() || v.isNull();
}

// The data set names a column without the table alias the select may use.
QString unqualified(const QString& column)
{
    return column.section(QLatin1Char('.'), -1).trimmed().toUpper();
}

} // namespace

const QString CodeSearchBox::kCodigoInexistente = QStringLiteral("Código inexistente");

CodeTarget CodeTarget::propietarios()
{
    return {QStringLiteral("PROPIETARIOS"),
            QStringLiteral("CODIGO"),
            QStringLiteral("APEYNOM"),
            QStringLiteral("SELECT CODIGO, APEYNOM, NIF, TEL, POB FROM PROPIETARIOS ORDER BY APEYNOM"),
            {{QStringLiteral("APEYNOM"), QStringLiteral("Apellidos y nombre")},
             {QStringLiteral("CODIGO"), QStringLiteral("Código")},
             {QStringLiteral("NIF"), QStringLiteral("NIF")},
             {QStringLiteral("TEL"), QStringLiteral("Teléfono")},
             {QStringLiteral("POB"), QStringLiteral("Población")}},
            true};
}

CodeTarget CodeTarget::clientes()
{
    return {QStringLiteral("CLIENTES"),
            QStringLiteral("CODIGO"),
            QStringLiteral("APEYNOM"),
            QStringLiteral("SELECT CODIGO, APEYNOM, NIF, TEL, POB FROM CLIENTES ORDER BY APEYNOM"),
            {{QStringLiteral("APEYNOM"), QStringLiteral("Apellidos y nombre")},
             {QStringLiteral("CODIGO"), QStringLiteral("Código")},
             {QStringLiteral("NIF"), QStringLiteral("NIF")},
             {QStringLiteral("TEL"), QStringLiteral("Teléfono")},
             {QStringLiteral("POB"), QStringLiteral("Población")}},
            true};
}

CodeSearchBox::CodeSearchBox(Database& db, Transaction& tr, CodeTarget target, QWidget* parent)
    : QWidget(parent), mDb(db), mTr(tr), mTarget(std::move(target))
{
    mEdit = new QLineEdit(this);
    mEdit->setObjectName(QStringLiteral("edCodigo"));
    if (mTarget.integerCode) {
        // Nine digits always fit an INTEGER key.
        mEdit->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("\\d{0,9}")), mEdit));
        mEdit->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    }
    mEdit->setFixedWidth(mEdit->fontMetrics().averageCharWidth() * 9 + 16);
    mButton = new QToolButton(this);
    mButton->setObjectName(QStringLiteral("btBuscar"));
    mButton->setText(QStringLiteral("…"));
    mButton->setToolTip(QStringLiteral("Buscar"));
    mButton->setFocusPolicy(Qt::TabFocus);
    mDescription = new QLabel(this);
    mDescription->setObjectName(QStringLiteral("lbDescripcion"));
    // A long name must not widen the form it sits in.
    mDescription->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    mDescription->setTextInteractionFlags(Qt::TextSelectableByMouse);
    mNote = new QLabel(this);
    mNote->setObjectName(QStringLiteral("lbAviso"));
    QPalette red = mNote->palette();
    red.setColor(QPalette::WindowText, QColor(0xC0, 0x1C, 0x28));
    mNote->setPalette(red);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(mEdit);
    layout->addWidget(mButton);
    layout->addSpacing(4);
    layout->addWidget(mDescription, 1);
    layout->addWidget(mNote);
    setFocusProxy(mEdit);

    mLookup = std::make_unique<Query>(
        db, tr,
        QStringLiteral("SELECT %1 FROM %2 WHERE %3 = :CODIGO")
            .arg(mTarget.description, mTarget.table, mTarget.codeColumn));

    connect(mEdit, &QLineEdit::editingFinished, this, &CodeSearchBox::takeTypedCode);
    connect(mButton, &QToolButton::clicked, this, &CodeSearchBox::openSearch);
}

CodeSearchBox::~CodeSearchBox() = default;

QString CodeSearchBox::codeText(const QVariant& code) const
{
    if (isNull(code))
        return {};
    return mTarget.integerCode ? QString::number(code.toLongLong()) : code.toString().trimmed();
}

void CodeSearchBox::setNote(bool shown)
{
    mNote->setText(shown ? kCodigoInexistente : QString());
}

CodeSearchBox::Lookup CodeSearchBox::describe(const QString& text, QVariant* key, QString* description)
{
    if (mTarget.integerCode) {
        bool ok = false;
        const qlonglong n = text.toLongLong(&ok);
        // Beyond an INTEGER the engine would fail instead of finding nothing.
        if (!ok || n < std::numeric_limits<qint32>::min() || n > std::numeric_limits<qint32>::max())
            return Lookup::Missing;
        *key = n;
    } else {
        *key = text;
    }
    try {
        mLookup->close();
        mLookup->paramByName(QStringLiteral("CODIGO")).setValue(*key);
        mLookup->open();
        const bool found = !mLookup->eof();
        if (found)
            *description = mLookup->field(0).asString().trimmed();
        mLookup->close();
        mDescribedText = text;
        mDescribedAs = found ? *description : QString();
        mDescribedFound = found;
        return found ? Lookup::Found : Lookup::Missing;
    } catch (const DatabaseError& e) {
        dialogs().error(e.message(), this);
    }
    return Lookup::Failed;
}

void CodeSearchBox::showCode(const QVariant& code)
{
    const QString text = codeText(code);
    // The user's unresolved typing stays while the stored code is the same.
    if (!mNote->text().isEmpty() && text == codeText(mCode))
        return;
    mCode = isNull(code) ? QVariant() : code;
    mEdit->setText(text);
    if (text.isEmpty()) {
        mDescription->clear();
        setNote(false);
        return;
    }
    if (text != mDescribedText) {
        QVariant key;
        QString description;
        if (describe(text, &key, &description) == Lookup::Failed) {
            mDescription->clear();
            setNote(false);
            return;
        }
    }
    mDescription->setText(mDescribedAs);
    // A stored code whose row has gone is worth saying too.
    setNote(!mDescribedFound);
}

bool CodeSearchBox::takeTypedCode()
{
    const QString text = mEdit->text().trimmed();
    if (text.isEmpty()) {
        mDescription->clear();
        setNote(false);
        if (!isNull(mCode)) {
            mCode = QVariant();
            Q_EMIT codeChosen(mCode);
        }
        return true;
    }
    if (mNote->text().isEmpty() && text == codeText(mCode))
        return true; // left the box without changing it
    QVariant key;
    QString description;
    switch (describe(text, &key, &description)) {
    case Lookup::Found: {
        const bool changed = codeText(key) != codeText(mCode);
        mCode = key;
        mEdit->setText(codeText(key));
        mDescription->setText(description);
        setNote(false);
        if (changed)
            Q_EMIT codeChosen(mCode);
        return true;
    }
    case Lookup::Missing:
        mDescription->clear();
        setNote(true);
        return false;
    case Lookup::Failed:
        break;
    }
    return false;
}

void CodeSearchBox::openSearch()
{
    if (mSearch)
        return;
    mSearch = new TTfrmBuscar(mDb, mTr, this); // clears the captions of the shared table
    llenarCamposBusqueda(mTarget.searchColumns);
    mSearch->setSql(mTarget.searchSql);
    connect(mSearch, &QDialog::finished, this, &CodeSearchBox::onSearchFinished);
    mSearch->open();
}

void CodeSearchBox::onSearchFinished(int result)
{
    TTfrmBuscar* dialog = mSearch;
    mSearch = nullptr;
    if (!dialog)
        return;
    dialog->deleteLater();
    mEdit->setFocus();
    if (result != QDialog::Accepted)
        return;
    DataSet* rows = dialog->qrybuscar();
    const int column = rows->fieldIndex(unqualified(mTarget.codeColumn));
    if (column < 0 || rows->recNo() < 0)
        return;
    mEdit->setText(codeText(rows->field(column).value()));
    takeTypedCode();
}

CodeSearchBinder::CodeSearchBinder(DataSet& dataSet, const QString& field, CodeSearchBox* box)
    : FieldBinder(dataSet, field, box), mBox(box)
{
    connect(box, &CodeSearchBox::codeChosen, this, [this] { userChanged(); });
    refresh();
}

void CodeSearchBinder::showValue(const QVariant& value)
{
    mBox->showCode(value);
}

QVariant CodeSearchBinder::controlValue() const
{
    return mBox->code();
}

} // namespace tv::ui
