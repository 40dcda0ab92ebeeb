#pragma once

#include "fieldbinder.h"
#include "frmbuscar.h"

#include <QPointer>
#include <QWidget>

#include <memory>

class QLabel;
class QLineEdit;
class QToolButton;

namespace tv {
class Database;
class Query;
class Transaction;
}

namespace tv::ui {

// The big table a code column points at (owners, clients): too many rows
// for a drop-down, so the code is typed or found with the search dialog.
struct CodeTarget {
    QString table;       // "PROPIETARIOS"
    QString codeColumn;  // its key, e.g. "CODIGO"
    QString description; // a column or expression of the table read for a code
    QString searchSql;   // the select the search dialog offers (must hold codeColumn)
    QList<CampoBusqueda> searchColumns;
    bool integerCode = true; // an INTEGER key: only digits make a code

    static CodeTarget propietarios();
    static CodeTarget clientes();
};

// A code box, a "…" button that opens the search dialog, the description of
// the code beside them, and a red note when a typed code does not exist.
// Leaving the box (or Enter) looks the typed code up with one query by key:
// a known code is taken (codeChosen), an unknown one is not, and the box
// keeps the typed text with the note until the user fixes it or the shown
// code changes. Interface thread only.
class CodeSearchBox : public QWidget {
    Q_OBJECT
public:
    static const QString kCodigoInexistente;

    CodeSearchBox(Database& db, Transaction& tr, CodeTarget target, QWidget* parent = nullptr);
    ~CodeSearchBox() override;

    const CodeTarget& target() const { return mTarget; }
    QLineEdit* codeEdit() const { return mEdit; }
    QToolButton* searchButton() const { return mButton; }
    QLabel* descriptionLabel() const { return mDescription; }
    QLabel* noteLabel() const { return mNote; }
    // The search dialog while it is open (nullptr otherwise).
    TTfrmBuscar* searchDialog() const { return mSearch; }

    // The code the box stands for: the last one shown or taken (invalid: none).
    QVariant code() const { return mCode; }
    // Shows a stored code and its description; sends nothing.
    void showCode(const QVariant& code);

public Q_SLOTS:
    // What leaving the box does: false when the typed code does not exist.
    bool takeTypedCode();
    // Opens the search dialog (modal to this window); a chosen row's code is taken.
    void openSearch();

Q_SIGNALS:
    // The user took another code (invalid when he emptied the box).
    void codeChosen(const QVariant& code);

private:
    enum class Lookup { Found, Missing, Failed };
    Lookup describe(const QString& text, QVariant* key, QString* description);
    QString codeText(const QVariant& code) const;
    void setNote(bool shown);
    void onSearchFinished(int result);

    Database& mDb;
    Transaction& mTr;
    CodeTarget mTarget;
    QLineEdit* mEdit;
    QToolButton* mButton;
    QLabel* mDescription;
    QLabel* mNote;
    QPointer<TTfrmBuscar> mSearch;
    std::unique_ptr<Query> mLookup;
    QVariant mCode;
    // The last code described, so moving between rows of one owner costs no query.
    QString mDescribedText;
    QString mDescribedAs;
    bool mDescribedFound = false;
};

// Binds a CodeSearchBox to a code field: the box shows the field's code and
// description; a code the user takes is written to the field, an unknown one
// never is.
class CodeSearchBinder : public FieldBinder {
    Q_OBJECT
public:
    CodeSearchBinder(DataSet& dataSet, const QString& field, CodeSearchBox* box);
    CodeSearchBox* box() const { return mBox; }

protected:
    void showValue(const QVariant& value) override;
    QVariant controlValue() const override;

private:
    CodeSearchBox* mBox;
};

} // namespace tv::ui
