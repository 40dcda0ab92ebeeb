#include "pendientes.h"

#include "commands.h"
#include "ribbontable.h"

namespace tv::shell {

namespace {

// Every command the ribbon and the application menu can send.
QStringList comandosDelRibbon()
{
    QStringList l;
    for (const RibbonItem& i : ribbonItems())
        if (i.kind != RibbonKind::Menu && i.kind != RibbonKind::LanguageBox && !l.contains(i.command))
            l.append(i.command);
    for (const RibbonMenuItem& m : ribbonMenuItems())
        if (!l.contains(m.command))
            l.append(m.command);
    l.append(QStringLiteral("escanear"));
    return l;
}

} // namespace

const QStringList& comandosDelShell()
{
    static const QStringList list = {QStringLiteral("salir"), QStringLiteral("calculadora"), QStringLiteral("manual"),
                                     QStringLiteral("fondo"), QStringLiteral("nombre-ordenador")};
    return list;
}

QStringList comandosPendientes()
{
    QStringList out;
    for (const QString& c : comandosDelRibbon())
        if (esPendiente(c))
            out.append(c);
    return out;
}

bool esPendiente(const QString& command)
{
    return !comandosDelShell().contains(command) && !ui::commands().contains(command) &&
           comandosDelRibbon().contains(command);
}

QString mensajePendiente(const QString& command)
{
    return QStringLiteral("La función «%1» todavía no está disponible en esta versión.").arg(captionOf(command));
}

} // namespace tv::shell
