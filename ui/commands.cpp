#include "commands.h"

#include <QDialog>
#include <QWidget>

namespace tv::ui {

CommandTable& CommandTable::instance()
{
    static CommandTable table;
    return table;
}

void CommandTable::add(Command c)
{
    for (Command& existing : mCommands) {
        if (existing.id == c.id) {
            existing = std::move(c);
            return;
        }
    }
    mCommands.append(std::move(c));
}

const Command* CommandTable::find(const QString& id) const
{
    for (const Command& c : mCommands)
        if (c.id == id)
            return &c;
    return nullptr;
}

QStringList CommandTable::ids() const
{
    QStringList out;
    for (const Command& c : mCommands)
        out.append(c.id);
    return out;
}

QWidget* CommandTable::openScreen(const QString& id) const
{
    return mOpen.value(id).data();
}

void CommandTable::clear()
{
    mCommands.clear();
    mOpen.clear();
    mModalRunner = {};
}

bool CommandTable::run(const QString& id, CommandHost& host)
{
    const Command* found = find(id);
    if (!found)
        return false;
    // The row may be replaced while its screen runs: work on a copy.
    const Command c = *found;
    QWidget* parent = host.hostWidget();
    if (c.singleInstance) {
        if (QWidget* open = openScreen(id)) {
            open->show();
            open->raise();
            open->activateWindow();
            return true;
        }
    }
    if (c.allowed && !c.allowed(parent))
        return false;
    if (c.action) {
        c.action(parent);
        return true;
    }
    if (!c.factory)
        return false;
    QWidget* screen = c.factory(parent);
    if (!screen)
        return true;
    screen->setAttribute(Qt::WA_DeleteOnClose);
    mOpen.insert(id, screen);
    if (c.openAs == OpenAs::Child) {
        host.showChild(screen);
        return true;
    }
    auto* dialog = qobject_cast<QDialog*>(screen);
    if (!dialog) {
        screen->setWindowModality(Qt::ApplicationModal);
        screen->show();
        return true;
    }
    const QPointer<QDialog> guard(dialog);
    if (mModalRunner)
        mModalRunner(dialog);
    else
        dialog->exec();
    // A modal screen is over once it is hidden, whether it closed or only hid.
    if (!guard || !guard->isVisible()) {
        mOpen.remove(id);
        if (guard)
            guard->deleteLater();
    }
    return true;
}

} // namespace tv::ui
