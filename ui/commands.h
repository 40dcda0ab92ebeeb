#pragma once

#include <QHash>
#include <QList>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <functional>

class QDialog;
class QWidget;

namespace tv::ui {

// Where a screen opens: its own modal window, or a child window of the
// main window's work area.
enum class OpenAs { Modal, Child };

// One screen or action the ribbon can start. Each library adds its own rows
// (registrarComandos of lookups/, register/, finance/...), so a new screen
// is a row in its library and the main window knows none of them by name.
struct Command {
    QString id;                                       // the ribbon's command
    std::function<QWidget*(QWidget* parent)> factory; // makes the screen (nullptr: nothing to show)
    OpenAs openAs = OpenAs::Modal;
    bool singleInstance = true;                       // a second start brings the open one forward
    // Who may start it; a refusal shows its own message and returns false.
    std::function<bool(QWidget* parent)> allowed = {};
    // An action with no screen of its own (a calculator, a question); used instead of factory.
    std::function<void(QWidget* parent)> action = {};
};

// The main window's side of starting a command.
class CommandHost {
public:
    virtual ~CommandHost() = default;
    virtual QWidget* hostWidget() = 0;
    // Shows a screen as a child window of the work area (owned by it).
    virtual void showChild(QWidget* screen) = 0;
};

class CommandTable {
public:
    static CommandTable& instance();

    // Adds or replaces the row of c.id.
    void add(Command c);
    const Command* find(const QString& id) const;
    bool contains(const QString& id) const { return find(id) != nullptr; }
    QStringList ids() const;

    // Runs a command: the rights check, one instance at a time, then the
    // screen, modal or child. False when the id is unknown or the check refused.
    // Exceptions of the factory or the screen reach the caller.
    bool run(const QString& id, CommandHost& host);
    // The screen a single-instance command has open (nullptr when none).
    QWidget* openScreen(const QString& id) const;

    // How a modal screen is run: exec() unless replaced (tests show it instead).
    using ModalRunner = std::function<void(QDialog*)>;
    void setModalRunner(ModalRunner runner) { mModalRunner = std::move(runner); }

    // Tests start from an empty table.
    void clear();

private:
    QList<Command> mCommands;
    QHash<QString, QPointer<QWidget>> mOpen;
    ModalRunner mModalRunner;
};

inline CommandTable& commands()
{
    return CommandTable::instance();
}

} // namespace tv::ui
