#pragma once

#include <QList>
#include <QString>

namespace tv::shell {

// What the ribbon shows, as data: one row per button, in order. Pages and
// groups appear in the order their first row does. Each button runs a
// command, named by a short id that the main window dispatches.
enum class RibbonKind {
    Large,       // big icon, caption under it
    Small,       // small icon, caption beside it, stacked three high
    Menu,        // big button that drops down a menu (its rows in ribbonMenuItems)
    LanguageBox, // the language drop-down
};

struct RibbonItem {
    QString page;
    QString group;
    QString caption;
    QString icon;
    QString command;
    RibbonKind kind = RibbonKind::Large;
};

// An entry of a drop-down button: the button's command, the entry's caption
// and its own command.
struct RibbonMenuItem {
    QString menu;
    QString caption;
    QString command;
};

// A property portal the agency can feed, with its web address.
struct Portal {
    QString name;
    QString address;
    QString command;
};

const QList<RibbonItem>& ribbonItems();
const QList<RibbonMenuItem>& ribbonMenuItems();
// Every feed of the "+Portales" menu, in menu order.
const QList<Portal>& portals();
// The caption the user reads for a command (button or menu entry).
QString captionOf(const QString& command);

inline const QString kPortalesMenuPrefix = QStringLiteral("Exportar los inmuebles a ");
inline const QStringList kLanguages = {QStringLiteral("Castellano"), QStringLiteral("Catalán")};

} // namespace tv::shell
