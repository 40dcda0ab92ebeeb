#pragma once

#include "dataset.h"
#include "column.h"
#include "ownership.h"

#include <QDialog>
#include <QFlags>
#include <QHash>
#include <QList>
#include <QPointer>

class QAction;
class QCheckBox;
class QComboBox;
class QDateEdit;
class QGridLayout;
class QLineEdit;
class QPlainTextEdit;
class QTextEdit;
class QToolBar;
class QVBoxLayout;

namespace tv::ui {

class FieldBinder;

// Drops the edit in course and every pending change of a data set; false
// when a hook refused (tv::Abort) and the data set stands as before.
bool discardChanges(DataSet& ds);

// The common record screen: one DataSet shown through bound controls, and
// the standard toolbar Nuevo, Borrar, Grabar, Cancelar, previous, next,
// Buscar, Imprimir, Salir (keys F2 new, F3 save, F5 cancel).
//
// Each screen tells which of these it supports (supportedActions) and
// overrides the steps it needs: validar() checks the record before it is
// saved, onBuscar()/onImprimir() do the searching and printing. Which buttons
// are enabled follows from the data set's state alone (browsing, editing,
// updates pending): there is no "modified" flag to keep in step.
//
// Saving: validar(), then "¿Está seguro de grabar los cambios?" (Yes only),
// then post, apply the cached updates and commit the shared transaction with
// its context kept. A database failure is shown once, with the database's own
// message, and the record stays as typed.
class RecordScreen : public QDialog {
    Q_OBJECT
public:
    enum class Action {
        Nuevo = 0x001,
        Borrar = 0x002,
        Grabar = 0x004,
        Cancelar = 0x008,
        Anterior = 0x010,
        Siguiente = 0x020,
        Buscar = 0x040,
        Imprimir = 0x080,
        Salir = 0x100,
    };
    Q_DECLARE_FLAGS(Actions, Action)

    explicit RecordScreen(QWidget* parent = nullptr);
    ~RecordScreen() override;

    DataSet* dataSet() const { return mDs; }
    // The data set the toolbar works on; bound controls may use others too.
    void setDataSet(DataSet* dataSet);

    // The standard actions this screen offers (all but Buscar and Imprimir
    // unless a screen says otherwise).
    virtual Actions supportedActions() const;
    bool isActionEnabled(Action a) const;
    QAction* action(Action a) const { return mActions.value(a); }
    QToolBar* toolBar() const { return mToolBar; }
    // The area under the toolbar where a screen lays out its fields.
    QWidget* body() const { return mBody; }

    // Bound controls on the screen's data set; the binder belongs to the control.
    FieldBinder* bindText(QLineEdit* edit, const QString& field);
    FieldBinder* bindFlag(QCheckBox* box, const QString& field);
    FieldBinder* bindDate(QDateEdit* edit, const QString& field);
    FieldBinder* bindMemo(QPlainTextEdit* edit, const QString& field);
    FieldBinder* bindRichText(QTextEdit* edit, const QString& field);
    // A lookup: items from sql (code, description).
    FieldBinder* bindLookup(QComboBox* box, const QString& field, const QString& sql, bool allowEmpty = false);
    // Builds a group of fields from a table, in a grid of `columns` columns.
    QList<FieldBinder*> buildFields(QGridLayout* grid, const QList<FieldSpec>& specs, int columns = 1);
    // The control bound to a column (by the helpers above).
    QWidget* controlFor(const QString& field) const;
    // The binder of a column (nullptr when none).
    FieldBinder* binderFor(const QString& field) const;

    // The agent rule of the screen's records: editing and deleting another
    // agent's record is refused with the rule's messages (before any
    // question), new records take the current agent.
    void setOwnership(const Ownership& rule);
    bool hasOwnership() const { return mHasOwnership; }

public Q_SLOTS:
    void nuevo();
    void borrar();
    // True when the record reached the database.
    bool grabar();
    bool cancelar();
    void anterior();
    void siguiente();
    void buscar();
    void imprimir();
    void salir();
    // Re-derives the enabled buttons from the data set's state.
    void updateActions();

Q_SIGNALS:
    void saved();
    void removed();

protected:
    // The checks before saving, in order. On the first failure return
    // fail(message, control): the message is shown, the control gets the
    // focus and the record stays in edit.
    virtual bool validar() { return true; }
    bool fail(const QString& message, QWidget* control = nullptr);
    // Shows failures as errors instead of warnings (some screens want that).
    void setValidationAsError(bool on) { mValidationAsError = on; }
    // One "Debe indicar ..." check per row: the first empty column fails.
    struct Required {
        QString field;
        QString message;
    };
    bool checkRequired(const QList<Required>& rules);
    // The same over the column descriptions: every column with a required
    // message, in the table's order.
    bool checkColumns(const Columns& columns);

    // A screen's own check before deleting; false refuses (after its message).
    virtual bool puedeBorrar() { return true; }
    virtual QString textoConfirmarBorrado() const;
    // The question before saving (some screens keep a wording of their own).
    virtual QString textoConfirmarGrabado() const;
    // Where the cursor goes after Nuevo (the first bound control by default).
    virtual QWidget* primerCampo() const;
    virtual void onBuscar() {}
    virtual void onImprimir() {}
    // Stores the pending changes inside the shared transaction, before it is
    // committed: the data set's cached updates by default; a screen whose
    // record has parts in other tables or databases stores them here too, so
    // one save lands whole or not at all.
    virtual void aplicarCambios();

    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    // Escape leaves through salir(), so pending changes are asked about.
    void reject() override;

private:
    QAction* addStandardAction(Action a, const QString& text, const QString& icon, const QKeySequence& key);
    FieldBinder* remember(FieldBinder* b);
    // Applies the cached updates and commits; false after showing the error.
    bool applyAndCommit();

    QPointer<DataSet> mDs;
    QToolBar* mToolBar;
    QWidget* mBody;
    QHash<Action, QAction*> mActions;
    QList<QPointer<FieldBinder>> mBinders;
    bool mValidationAsError = false;
    Ownership mOwnership;
    bool mHasOwnership = false;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(RecordScreen::Actions)

} // namespace tv::ui
