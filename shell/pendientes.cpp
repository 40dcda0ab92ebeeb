#include "pendientes.h"

#include "ribbontable.h"

namespace tv::shell {

const QStringList& comandosPendientes()
{
    static const QStringList list = [] {
        QStringList l = {
            // FICHEROS
            QStringLiteral("inmuebles"), QStringLiteral("demandas"), QStringLiteral("operaciones"),
            QStringLiteral("cruce-automatico"), QStringLiteral("clientes"), QStringLiteral("propietarios"),
            QStringLiteral("agentes"), QStringLiteral("contactos"), QStringLiteral("agenda"),
            QStringLiteral("gestiones"), QStringLiteral("promociones-fichero"), QStringLiteral("promociones-estado"),
            QStringLiteral("mi-web"), QStringLiteral("fotocasa"), QStringLiteral("idealista"),
            QStringLiteral("yaencontre"), QStringLiteral("pisos"), QStringLiteral("habitaclia"),
            // UTILIDADES
            QStringLiteral("disenar-escaparate"), QStringLiteral("generar-escaparate"),
            QStringLiteral("disenar-contrato"), QStringLiteral("plantilla-operaciones"), QStringLiteral("nota-venta"),
            QStringLiteral("nota-compra"), QStringLiteral("circular-interesados"),
            QStringLiteral("recogida-informacion"), QStringLiteral("carrusel"), QStringLiteral("estadisticas"),
            QStringLiteral("telefonos"),
            // CAMPAÑAS DE MARKETING
            QStringLiteral("generar-campana"), QStringLiteral("enviar-mail"), QStringLiteral("enviar-sms"),
            // TABLAS AUXILIARES
            QStringLiteral("tipos-familias"), QStringLiteral("tipos-inmuebles"), QStringLiteral("tipos-operaciones"),
            QStringLiteral("tipos-estados"), QStringLiteral("tipos-zonas"), QStringLiteral("origenes-publicitarios"),
            QStringLiteral("tipos-gastos"), QStringLiteral("tipos-gestiones"), QStringLiteral("tipos-perfiles"),
            QStringLiteral("departamentos"),
            // TABLAS COMUNES
            QStringLiteral("configurar-empresa"), QStringLiteral("bancos"), QStringLiteral("tipos-iva"),
            QStringLiteral("municipios"), QStringLiteral("configurar-agenda"), QStringLiteral("tipos-citas"),
            QStringLiteral("historico-agenda"),
            // HERRAMIENTAS
            QStringLiteral("configurar-aplicacion"), QStringLiteral("configurar-red"), QStringLiteral("actualizar"),
            QStringLiteral("realizar-copia"), QStringLiteral("restaurar-copia"),
            // Application menu
            QStringLiteral("escanear"),
        };
        // Every feed of the "+Portales" menu.
        for (const Portal& p : portals())
            l.append(p.command);
        return l;
    }();
    return list;
}

bool esPendiente(const QString& command)
{
    return comandosPendientes().contains(command);
}

QString mensajePendiente(const QString& command)
{
    return QStringLiteral("La función «%1» todavía no está disponible en esta versión.").arg(captionOf(command));
}

} // namespace tv::shell
