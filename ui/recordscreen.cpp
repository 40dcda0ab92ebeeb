#include "recordscreen.h"

#include "checkboxbinder.h"
#include "comboboxbinder.h"
#include "dateeditbinder.h"
#include "dialogs.h"
#include "formbuilder.h"
#include "icons.h"
#include "lineeditbinder.h"
#include "lookupcatalogue.h"
#include "memobinder.h"
#include "richtextbinder.h"
#include "transaction.h"

#include <QAction>
#include <QCloseEvent>
#include <QLineEdit>
#include <QShowEvent>
#include <QStackedWidget>
#include <QTabWidget>
#include <QToolBar>
#include <QVBoxLayout>

namespace tv::ui {

namespace {

const QString kConfirmarGrabar = QStringLiteral("¿Está seguro de grabar los cambios?");
const QString kConfirmarCancelar = QStringLiteral("¿Está seguro de cancelar los cambios?");
const QString kConfirmarBorrar = QStringLiteral("¿Está seguro de eliminar el registro actual? ");

// Brings the page holding w to the front, so the focus lands where it shows.
void revealPageOf(QWidget* w)
{
    for (QWidget* child = w, *p = w ? w->parentWidget() : nullptr; p; child = p, p = p->parentWidget()) {
        auto* stack = qobject_cast<QStackedWidget*>(p);
        if (!stack)
            continue;
        // A tab widget's pages sit in its own stack; its tab bar must follow.
        if (auto* tabs = qobject_cast<QTabWidget*>(stack->parentWidget()))
            tabs->setCurrentWidget(child);
        else
            stack->setCurrentWidget(child);
    }
}

} // namespace

bool discardChanges(DataSet& ds)
{
    try {
        if (ds.isEditing())
            ds.cancel();
        if (ds.updatesPending())
            ds.cancelUpdates();
    } catch (const Abort&) {
        return false;
    }
    return true;
}

RecordScreen::RecordScreen(QWidget* parent) : QDialog(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    mToolBar = new QToolBar(this);
    mToolBar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    mToolBar->setIconSize(QSize(24, 24));
    layout->addWidget(mToolBar);
    mBody = new QWidget(this);
    layout->addWidget(mBody, 1);

    addStandardAction(Action::Nuevo, QStringLiteral("Nuevo"), QStringLiteral("document-new"), Qt::Key_F2);
    addStandardAction(Action::Borrar, QStringLiteral("Borrar"), QStringLiteral("edit-delete"), {});
    addStandardAction(Action::Grabar, QStringLiteral("Grabar"), QStringLiteral("document-save"), Qt::Key_F3);
    addStandardAction(Action::Cancelar, QStringLiteral("Cancelar"), QStringLiteral("edit-undo"), Qt::Key_F5);
    mToolBar->addSeparator();
    addStandardAction(Action::Anterior, QStringLiteral("Anterior"), QStringLiteral("go-previous"), {});
    addStandardAction(Action::Siguiente, QStringLiteral("Siguiente"), QStringLiteral("go-next"), {});
    mToolBar->addSeparator();
    addStandardAction(Action::Buscar, QStringLiteral("Buscar"), QStringLiteral("edit-find"), {});
    addStandardAction(Action::Imprimir, QStringLiteral("Imprimir"), QStringLiteral("document-print"), {});
    mToolBar->addSeparator();
    addStandardAction(Action::Salir, QStringLiteral("Salir"), QStringLiteral("application-exit"), {});

    connect(mActions[Action::Nuevo], &QAction::triggered, this, &RecordScreen::nuevo);
    connect(mActions[Action::Borrar], &QAction::triggered, this, &RecordScreen::borrar);
    connect(mActions[Action::Grabar], &QAction::triggered, this, &RecordScreen::grabar);
    connect(mActions[Action::Cancelar], &QAction::triggered, this, &RecordScreen::cancelar);
    connect(mActions[Action::Anterior], &QAction::triggered, this, &RecordScreen::anterior);
    connect(mActions[Action::Siguiente], &QAction::triggered, this, &RecordScreen::siguiente);
    connect(mActions[Action::Buscar], &QAction::triggered, this, &RecordScreen::buscar);
    connect(mActions[Action::Imprimir], &QAction::triggered, this, &RecordScreen::imprimir);
    connect(mActions[Action::Salir], &QAction::triggered, this, &RecordScreen::salir);
    updateActions();
}

RecordScreen::~RecordScreen() = default;

QAction* RecordScreen::addStandardAction(Action a, const QString& text, const QString& icon,
                                         const QKeySequence& key)
{
    auto* act = new QAction(themeIcon(icon), text, this);
    if (!key.isEmpty()) {
        act->setShortcut(key);
        act->setToolTip(QStringLiteral("%1 (%2)").arg(text, key.toString(QKeySequence::NativeText)));
    }
    // Several screens live in one main window: a key acts on the screen that has the focus.
    act->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    addAction(act);
    mToolBar->addAction(act);
    mActions.insert(a, act);
    return act;
}

void RecordScreen::setDataSet(DataSet* dataSet)
{
    if (mDs)
        disconnect(mDs, nullptr, this, nullptr);
    mDs = dataSet;
    if (dataSet) {
        connect(dataSet, &DataSet::stateChanged, this, &RecordScreen::updateActions);
        connect(dataSet, &DataSet::currentChanged, this, &RecordScreen::updateActions);
        connect(dataSet, &DataSet::reset, this, &RecordScreen::updateActions);
        connect(dataSet, &DataSet::rowsFetched, this, &RecordScreen::updateActions);
        connect(dataSet, &DataSet::rowInserted, this, &RecordScreen::updateActions);
        connect(dataSet, &DataSet::rowRemoved, this, &RecordScreen::updateActions);
        connect(dataSet, &DataSet::rowChanged, this, &RecordScreen::updateActions);
    }
    updateActions();
}

RecordScreen::Actions RecordScreen::supportedActions() const
{
    return Action::Nuevo | Action::Borrar | Action::Grabar | Action::Cancelar | Action::Anterior |
           Action::Siguiente | Action::Salir;
}

bool RecordScreen::isActionEnabled(Action a) const
{
    if (!supportedActions().testFlag(a))
        return false;
    if (a == Action::Salir)
        return true;
    if (!mDs || !mDs->isOpen())
        return false;
    const bool editing = mDs->isEditing();
    switch (a) {
    case Action::Nuevo:
        return !editing;
    case Action::Borrar:
        return !editing && !mDs->isEmpty() && mDs->recNo() >= 0;
    case Action::Grabar:
    case Action::Cancelar:
        return editing || mDs->updatesPending();
    case Action::Anterior:
        return !editing && mDs->recNo() > 0;
    case Action::Siguiente:
        return !editing && (mDs->recNo() < mDs->recordCount() - 1 || mDs->canFetchMore());
    case Action::Buscar:
    case Action::Imprimir:
        return !editing;
    case Action::Salir:
        break;
    }
    return true;
}

void RecordScreen::updateActions()
{
    const Actions supported = supportedActions();
    for (auto it = mActions.cbegin(); it != mActions.cend(); ++it) {
        it.value()->setVisible(supported.testFlag(it.key()));
        it.value()->setEnabled(isActionEnabled(it.key()));
    }
    // A separator shows only between two groups that both show something.
    bool buttonBefore = false;
    QAction* waiting = nullptr;
    for (QAction* a : mToolBar->actions()) {
        if (a->isSeparator()) {
            a->setVisible(false);
            if (buttonBefore)
                waiting = a;
            buttonBefore = false;
        } else if (a->isVisible()) {
            if (waiting)
                waiting->setVisible(true);
            waiting = nullptr;
            buttonBefore = true;
        }
    }
}

void RecordScreen::showEvent(QShowEvent* event)
{
    updateActions();
    QDialog::showEvent(event);
}

// ------------------------------------------------------------------ binders

FieldBinder* RecordScreen::remember(FieldBinder* b)
{
    mBinders.append(b);
    return b;
}

FieldBinder* RecordScreen::bindText(QLineEdit* edit, const QString& field)
{
    Q_ASSERT(mDs);
    return remember(new LineEditBinder(*mDs, field, edit));
}

FieldBinder* RecordScreen::bindFlag(QCheckBox* box, const QString& field)
{
    Q_ASSERT(mDs);
    return remember(new CheckBoxBinder(*mDs, field, box));
}

FieldBinder* RecordScreen::bindDate(QDateEdit* edit, const QString& field)
{
    Q_ASSERT(mDs);
    return remember(new DateEditBinder(*mDs, field, edit));
}

FieldBinder* RecordScreen::bindMemo(QPlainTextEdit* edit, const QString& field)
{
    Q_ASSERT(mDs);
    return remember(new MemoBinder(*mDs, field, edit));
}

FieldBinder* RecordScreen::bindRichText(QTextEdit* edit, const QString& field)
{
    Q_ASSERT(mDs);
    return remember(new RichTextBinder(*mDs, field, edit));
}

FieldBinder* RecordScreen::bindLookup(QComboBox* box, const QString& field, const QString& sql, bool allowEmpty)
{
    Q_ASSERT(mDs);
    auto* b = new ComboBoxBinder(*mDs, field, box);
    if (!sql.isEmpty())
        b->loadItems(mDs->database(), mDs->transaction(), sql, allowEmpty);
    return remember(b);
}

QList<FieldBinder*> RecordScreen::buildFields(QGridLayout* grid, const QList<FieldSpec>& specs, int columns)
{
    Q_ASSERT(mDs);
    const QList<FieldBinder*> built = FormBuilder(*mDs).build(grid, specs, columns);
    for (FieldBinder* b : built)
        remember(b);
    return built;
}

QWidget* RecordScreen::controlFor(const QString& field) const
{
    const QString wanted = field.toUpper();
    for (const QPointer<FieldBinder>& b : mBinders)
        if (b && b->fieldName() == wanted)
            return b->control();
    return nullptr;
}

FieldBinder* RecordScreen::binderFor(const QString& field) const
{
    const QString wanted = field.toUpper();
    for (const QPointer<FieldBinder>& b : mBinders)
        if (b && b->fieldName() == wanted)
            return b;
    return nullptr;
}

void RecordScreen::setOwnership(const Ownership& rule)
{
    Q_ASSERT(mDs);
    mOwnership = rule;
    mHasOwnership = true;
    protect(*mDs, rule, this);
}

QWidget* RecordScreen::primerCampo() const
{
    for (const QPointer<FieldBinder>& b : mBinders)
        if (b && b->control() && b->control()->isEnabled())
            return b->control();
    return nullptr;
}

// --------------------------------------------------------------- validation

bool RecordScreen::fail(const QString& message, QWidget* control)
{
    if (mValidationAsError)
        dialogs().error(message, this);
    else
        dialogs().warning(message, this);
    if (control) {
        revealPageOf(control);
        control->setFocus(Qt::OtherFocusReason);
    }
    return false;
}

bool RecordScreen::checkRequired(const QList<Required>& rules)
{
    for (const Required& r : rules) {
        const QVariant v = mDs->fieldByName(r.field).value();
        if (!v.isValid() || v.isNull() || v.toString().trimmed().isEmpty())
            return fail(r.message, controlFor(r.field));
    }
    return true;
}

bool RecordScreen::checkColumns(const Columns& columns)
{
    QList<Required> rules;
    for (const Column& c : columns)
        if (!c.required.isEmpty())
            rules.append({c.column, c.required});
    return checkRequired(rules);
}

QString RecordScreen::textoConfirmarBorrado() const
{
    return kConfirmarBorrar;
}

QString RecordScreen::textoConfirmarGrabado() const
{
    return kConfirmarGrabar;
}

// ------------------------------------------------------------------ actions

void RecordScreen::aplicarCambios()
{
    mDs->applyUpdates();
}

bool RecordScreen::applyAndCommit()
{
    try {
        aplicarCambios();
        // Every screen's data set runs on the shared transaction (dm->Transacion).
        mDs->transaction().commitRetaining();
        if (!mDs->table().isEmpty())
            lookups().changed(mDs->table());
        return true;
    } catch (const DatabaseError& e) {
        dialogs().error(e.message(), this);
        return false;
    }
}

void RecordScreen::nuevo()
{
    if (!isActionEnabled(Action::Nuevo))
        return;
    try {
        mDs->insert();
    } catch (const Abort&) {
        return;
    } catch (const DatabaseError& e) {
        dialogs().error(e.message(), this);
        return;
    }
    if (QWidget* w = primerCampo()) {
        revealPageOf(w);
        w->setFocus(Qt::OtherFocusReason);
    }
}

void RecordScreen::borrar()
{
    if (!isActionEnabled(Action::Borrar))
        return;
    if (mHasOwnership && !mOwnership.deleteRefused.isEmpty() && !mayChange(*mDs, mOwnership)) {
        dialogs().information(mOwnership.deleteRefused, this);
        return;
    }
    if (!puedeBorrar())
        return;
    if (!dialogs().confirmation(textoConfirmarBorrado(), this))
        return;
    try {
        mDs->remove();
    } catch (const Abort&) {
        return;
    } catch (const DatabaseError& e) {
        dialogs().error(e.message(), this);
        return;
    }
    if (!applyAndCommit()) {
        // The database kept the row: show it again rather than pretend it went.
        mDs->cancelUpdates();
        updateActions();
        return;
    }
    updateActions();
    Q_EMIT removed();
}

bool RecordScreen::grabar()
{
    if (!isActionEnabled(Action::Grabar))
        return false;
    // F3 and the toolbar never leave the box being typed in: what leaving it
    // does (a normalised NIF, a padded code) must happen before the checks.
    if (auto* edit = qobject_cast<QLineEdit*>(focusWidget()))
        Q_EMIT edit->editingFinished();
    if (mDs->isEditing() && !validar())
        return false;
    if (!dialogs().confirmation(textoConfirmarGrabado(), this))
        return false;
    try {
        mDs->post();
    } catch (const Abort&) {
        return false;
    } catch (const DatabaseError& e) {
        dialogs().error(e.message(), this);
        return false;
    }
    const bool ok = applyAndCommit();
    updateActions();
    if (ok)
        Q_EMIT saved();
    return ok;
}

bool RecordScreen::cancelar()
{
    if (!isActionEnabled(Action::Cancelar))
        return false;
    if (!dialogs().confirmation(kConfirmarCancelar, this))
        return false;
    if (!discardChanges(*mDs))
        return false;
    updateActions();
    return true;
}

void RecordScreen::anterior()
{
    if (isActionEnabled(Action::Anterior))
        mDs->prior();
}

void RecordScreen::siguiente()
{
    if (isActionEnabled(Action::Siguiente))
        mDs->next();
}

void RecordScreen::buscar()
{
    if (isActionEnabled(Action::Buscar))
        onBuscar();
}

void RecordScreen::imprimir()
{
    if (isActionEnabled(Action::Imprimir))
        onImprimir();
}

void RecordScreen::salir()
{
    close();
}

void RecordScreen::reject()
{
    close();
}

void RecordScreen::closeEvent(QCloseEvent* event)
{
    // Nothing typed is lost silently: leaving with changes asks first.
    if (mDs && mDs->isOpen() && (mDs->isEditing() || mDs->updatesPending())) {
        if (!cancelar()) {
            event->ignore();
            return;
        }
    }
    // QDialog's own handler would call reject() and so close() again.
    event->accept();
}

} // namespace tv::ui
