#include "ribbontable.h"

namespace tv::shell {

namespace {

const QString kFicheros = QStringLiteral("FICHEROS");
const QString kUtilidades = QStringLiteral("UTILIDADES");
const QString kCampanas = QStringLiteral("CAMPAÑAS DE MARKETING");
const QString kAuxiliares = QStringLiteral("TABLAS AUXILIARES");
const QString kComunes = QStringLiteral("TABLAS COMUNES");
const QString kHerramientas = QStringLiteral("HERRAMIENTAS");

} // namespace

const QList<RibbonItem>& ribbonItems()
{
    using K = RibbonKind;
    static const QList<RibbonItem> items = {
        // page, group, caption, icon, command
        {kFicheros, QStringLiteral("Datos Generales"), QStringLiteral("Inmuebles"), QStringLiteral("go-home"), QStringLiteral("inmuebles")},
        {kFicheros, QStringLiteral("Datos Generales"), QStringLiteral("Demandas"), QStringLiteral("system-search"), QStringLiteral("demandas")},
        {kFicheros, QStringLiteral("Datos Generales"), QStringLiteral("Operaciones"), QStringLiteral("emblem-documents"), QStringLiteral("operaciones")},
        {kFicheros, QStringLiteral("Datos Generales"), QStringLiteral("Cruce-Automático"), QStringLiteral("media-playlist-shuffle"), QStringLiteral("cruce-automatico")},
        {kFicheros, QStringLiteral("Datos Generales"), QStringLiteral("Clientes"), QStringLiteral("system-users"), QStringLiteral("clientes")},
        {kFicheros, QStringLiteral("Datos Generales"), QStringLiteral("Propietarios"), QStringLiteral("avatar-default"), QStringLiteral("propietarios")},
        {kFicheros, QStringLiteral("Datos Generales"), QStringLiteral("Agentes"), QStringLiteral("contact-new"), QStringLiteral("agentes")},
        {kFicheros, QStringLiteral("Datos Generales"), QStringLiteral("Contactos"), QStringLiteral("x-office-address-book"), QStringLiteral("contactos")},
        {kFicheros, QStringLiteral("Datos Generales"), QStringLiteral("Agenda"), QStringLiteral("x-office-calendar"), QStringLiteral("agenda")},
        {kFicheros, QStringLiteral("Datos Generales"), QStringLiteral("Gestiones"), QStringLiteral("document-edit"), QStringLiteral("gestiones")},
        {kFicheros, QStringLiteral("Datos Generales"), QStringLiteral("Promociones"), QStringLiteral("tv-edificio"), QStringLiteral("promociones"), K::Menu},
        {kFicheros, QStringLiteral("Portales"), QStringLiteral("Mi-Web"), QStringLiteral("web-browser"), QStringLiteral("mi-web")},
        {kFicheros, QStringLiteral("Portales"), QStringLiteral("Fotocasa"), QStringLiteral("document-send"), QStringLiteral("fotocasa"), K::Small},
        {kFicheros, QStringLiteral("Portales"), QStringLiteral("Idealista"), QStringLiteral("document-send"), QStringLiteral("idealista"), K::Small},
        {kFicheros, QStringLiteral("Portales"), QStringLiteral("Yaencontre"), QStringLiteral("document-send"), QStringLiteral("yaencontre"), K::Small},
        {kFicheros, QStringLiteral("Portales"), QStringLiteral("Pisos.com"), QStringLiteral("document-send"), QStringLiteral("pisos"), K::Small},
        {kFicheros, QStringLiteral("Portales"), QStringLiteral("Habitaclia"), QStringLiteral("document-send"), QStringLiteral("habitaclia"), K::Small},
        {kFicheros, QStringLiteral("Portales"), QStringLiteral("+Portales"), QStringLiteral("tv-portales"), QStringLiteral("mas-portales"), K::Menu},

        {kUtilidades, QStringLiteral("Plantillas del escaparate"), QStringLiteral("Diseñar Escaparate"), QStringLiteral("applications-graphics"), QStringLiteral("disenar-escaparate")},
        {kUtilidades, QStringLiteral("Plantillas del escaparate"), QStringLiteral("Generar Escaparate"), QStringLiteral("image-x-generic"), QStringLiteral("generar-escaparate")},
        {kUtilidades, QStringLiteral("Contratos"), QStringLiteral("Diseñar Contrato"), QStringLiteral("x-office-document"), QStringLiteral("disenar-contrato"), K::Small},
        {kUtilidades, QStringLiteral("Contratos"), QStringLiteral("Plantilla Operaciones"), QStringLiteral("format-text-rich"), QStringLiteral("plantilla-operaciones"), K::Small},
        {kUtilidades, QStringLiteral("Notas de encargo"), QStringLiteral("Nota de Venta"), QStringLiteral("document-new"), QStringLiteral("nota-venta"), K::Small},
        {kUtilidades, QStringLiteral("Notas de encargo"), QStringLiteral("Nota de Compra"), QStringLiteral("document-properties"), QStringLiteral("nota-compra"), K::Small},
        {kUtilidades, QStringLiteral("Más Herramientas"), QStringLiteral("Diseñar circular clientes interesados"), QStringLiteral("mail-message-new"), QStringLiteral("circular-interesados"), K::Small},
        {kUtilidades, QStringLiteral("Más Herramientas"), QStringLiteral("Imprimir documento recogida de información"), QStringLiteral("document-print"), QStringLiteral("recogida-informacion"), K::Small},
        {kUtilidades, QStringLiteral("Más Herramientas"), QStringLiteral("Calculadora"), QStringLiteral("accessories-calculator"), QStringLiteral("calculadora"), K::Small},
        {kUtilidades, QStringLiteral("Carrusel de imágenes"), QStringLiteral("Carrusel"), QStringLiteral("media-playlist-repeat"), QStringLiteral("carrusel")},
        {kUtilidades, QString(), QStringLiteral("Estadísticas"), QStringLiteral("tv-estadisticas"), QStringLiteral("estadisticas")},
        {kUtilidades, QStringLiteral("Histórico telefónico"), QStringLiteral("Telefonos"), QStringLiteral("call-start"), QStringLiteral("telefonos")},

        {kCampanas, QStringLiteral("Campañas"), QStringLiteral("Generar Campaña"), QStringLiteral("mail-send-receive"), QStringLiteral("generar-campana")},
        {kCampanas, QStringLiteral("Campañas"), QStringLiteral("Enviar Mail"), QStringLiteral("mail-send"), QStringLiteral("enviar-mail")},
        {kCampanas, QStringLiteral("Campañas"), QStringLiteral("Enviar SMS"), QStringLiteral("chat-message-new"), QStringLiteral("enviar-sms")},

        {kAuxiliares, QStringLiteral("Tablas auxiliares"), QStringLiteral("Tipos de Familias"), QStringLiteral("view-app-grid"), QStringLiteral("tipos-familias")},
        {kAuxiliares, QStringLiteral("Tablas auxiliares"), QStringLiteral("Tipos de Inmuebles"), QStringLiteral("go-home"), QStringLiteral("tipos-inmuebles")},
        {kAuxiliares, QStringLiteral("Tablas auxiliares"), QStringLiteral("Tipos de Operaciones"), QStringLiteral("emblem-documents"), QStringLiteral("tipos-operaciones")},
        {kAuxiliares, QStringLiteral("Tablas auxiliares"), QStringLiteral("Tipos de Estados"), QStringLiteral("emblem-important"), QStringLiteral("tipos-estados")},
        {kAuxiliares, QStringLiteral("Tablas auxiliares"), QStringLiteral("Tipos de Zonas"), QStringLiteral("find-location"), QStringLiteral("tipos-zonas")},
        {kAuxiliares, QStringLiteral("Tablas auxiliares"), QStringLiteral("Orígenes Publicitarios"), QStringLiteral("emblem-favorite"), QStringLiteral("origenes-publicitarios")},
        {kAuxiliares, QStringLiteral("Tablas auxiliares"), QStringLiteral("Tipos de Gastos"), QStringLiteral("tv-euro"), QStringLiteral("tipos-gastos")},
        {kAuxiliares, QStringLiteral("Tablas auxiliares"), QStringLiteral("Tipos de Gestiones"), QStringLiteral("document-edit"), QStringLiteral("tipos-gestiones")},
        {kAuxiliares, QStringLiteral("Tablas auxiliares"), QStringLiteral("Tipos de Perfiles"), QStringLiteral("system-switch-user"), QStringLiteral("tipos-perfiles")},
        {kAuxiliares, QStringLiteral("Tablas auxiliares"), QStringLiteral("Departamentos"), QStringLiteral("system-users"), QStringLiteral("departamentos")},

        {kComunes, QStringLiteral("Tablas comunes"), QStringLiteral("Configurar Empresa"), QStringLiteral("emblem-system"), QStringLiteral("configurar-empresa")},
        {kComunes, QStringLiteral("Tablas comunes"), QStringLiteral("Bancos"), QStringLiteral("tv-banco"), QStringLiteral("bancos")},
        {kComunes, QStringLiteral("Tablas comunes"), QStringLiteral("Tipos de Iva"), QStringLiteral("tv-porcentaje"), QStringLiteral("tipos-iva")},
        {kComunes, QStringLiteral("Tablas comunes"), QStringLiteral("Municipios"), QStringLiteral("mark-location"), QStringLiteral("municipios")},
        {kComunes, QStringLiteral("Configurar agenda"), QStringLiteral("Configurar Agenda"), QStringLiteral("x-office-calendar"), QStringLiteral("configurar-agenda")},
        {kComunes, QStringLiteral("Configurar agenda"), QStringLiteral("Tipos de Citas"), QStringLiteral("appointment-new"), QStringLiteral("tipos-citas")},
        {kComunes, QStringLiteral("Configurar agenda"), QStringLiteral("Histórico"), QStringLiteral("document-open-recent"), QStringLiteral("historico-agenda")},
        {kComunes, QStringLiteral("Configurar idioma"), QStringLiteral("Idioma"), QStringLiteral("preferences-desktop-locale"), QStringLiteral("idioma"), K::LanguageBox},

        {kHerramientas, QStringLiteral("Herramientas"), QStringLiteral("Manual"), QStringLiteral("help-browser"), QStringLiteral("manual")},
        {kHerramientas, QStringLiteral("Herramientas"), QStringLiteral("Fondo"), QStringLiteral("preferences-desktop-wallpaper"), QStringLiteral("fondo")},
        {kHerramientas, QStringLiteral("Herramientas"), QStringLiteral("Configurar aplicacion"), QStringLiteral("preferences-system"), QStringLiteral("configurar-aplicacion")},
        {kHerramientas, QStringLiteral("Herramientas"), QStringLiteral("Nombre del ordenador"), QStringLiteral("computer"), QStringLiteral("nombre-ordenador")},
        {kHerramientas, QStringLiteral("Herramientas"), QStringLiteral("Configurar Red"), QStringLiteral("network-wired"), QStringLiteral("configurar-red")},
        {kHerramientas, QStringLiteral("Herramientas"), QStringLiteral("Actualizar"), QStringLiteral("system-software-install"), QStringLiteral("actualizar")},
        {kHerramientas, QStringLiteral("Herramientas"), QStringLiteral("Realizar Copia"), QStringLiteral("document-save"), QStringLiteral("realizar-copia")},
        {kHerramientas, QStringLiteral("Herramientas"), QStringLiteral("Restaurar Copia"), QStringLiteral("document-revert"), QStringLiteral("restaurar-copia")},
        {kHerramientas, QStringLiteral("Financiación"), QStringLiteral("Calculadora hipotecaria"), QStringLiteral("tv-euro"), QStringLiteral("calculadora-hipotecaria")},
        {kHerramientas, QStringLiteral("Financiación"), QStringLiteral("Cuadro de financiación"), QStringLiteral("tv-porcentaje"), QStringLiteral("cuadro-financiacion")},
    };
    return items;
}

const QList<Portal>& portals()
{
    static const QList<Portal> list = {
        {QStringLiteral("su página web"), QStringLiteral("su página web"), QStringLiteral("portal-web-propia")},
        {QStringLiteral("su portal web"), QStringLiteral("su portal web (generador de páginas)"), QStringLiteral("portal-generador-web")},
        {QStringLiteral("fotocasa"), QStringLiteral("www.fotocasa.es"), QStringLiteral("portal-fotocasa")},
        {QStringLiteral("idealista"), QStringLiteral("www.idealista.com"), QStringLiteral("portal-idealista")},
        {QStringLiteral("habitaclia"), QStringLiteral("www.habitaclia.com"), QStringLiteral("portal-habitaclia")},
        {QStringLiteral("indomio"), QStringLiteral("www.indomio.es"), QStringLiteral("portal-indomio")},
        {QStringLiteral("misviviendas"), QStringLiteral("www.misviviendas.com"), QStringLiteral("portal-misviviendas")},
        {QStringLiteral("yaencontre"), QStringLiteral("www.yaencontre.com"), QStringLiteral("portal-yaencontre")},
        {QStringLiteral("pisos"), QStringLiteral("www.pisos.com"), QStringLiteral("portal-pisos")},
        {QStringLiteral("globaliza"), QStringLiteral("www.globaliza.com"), QStringLiteral("portal-globaliza")},
        {QStringLiteral("vivados"), QStringLiteral("www.vivados.es"), QStringLiteral("portal-vivados")},
        {QStringLiteral("facilisimo"), QStringLiteral("www.facilisimo.com"), QStringLiteral("portal-facilisimo")},
        {QStringLiteral("thinkspain"), QStringLiteral("www.thinkspain.com"), QStringLiteral("portal-thinkspain")},
        {QStringLiteral("tucasa"), QStringLiteral("www.tucasa.com"), QStringLiteral("portal-tucasa")},
        {QStringLiteral("inzoco"), QStringLiteral("www.inzoco.com"), QStringLiteral("portal-inzoco")},
        {QStringLiteral("hogaria"), QStringLiteral("www.hogaria.net"), QStringLiteral("portal-hogaria")},
        {QStringLiteral("pisocasas"), QStringLiteral("www.pisocasas.com"), QStringLiteral("portal-pisocasas")},
        {QStringLiteral("spainhouses"), QStringLiteral("www.spainhouses.net"), QStringLiteral("portal-spainhouses")},
        {QStringLiteral("luxuryestate"), QStringLiteral("www.luxuryestate.com"), QStringLiteral("portal-luxuryestate")},
        {QStringLiteral("anuncialo"), QStringLiteral("www.anuncialo.com"), QStringLiteral("portal-anuncialo")},
        {QStringLiteral("1001portales"), QStringLiteral("www.1001portales.com"), QStringLiteral("portal-1001portales")},
        {QStringLiteral("trovimap"), QStringLiteral("www.trovimap.com"), QStringLiteral("portal-trovimap")},
        {QStringLiteral("Kyero"), QStringLiteral("www.kyero.com"), QStringLiteral("portal-kyero")},
    };
    return list;
}

const QList<RibbonMenuItem>& ribbonMenuItems()
{
    static const QList<RibbonMenuItem> items = [] {
        QList<RibbonMenuItem> l = {
            {QStringLiteral("promociones"), QStringLiteral("Fichero de Promociones"), QStringLiteral("promociones-fichero")},
            {QStringLiteral("promociones"), QStringLiteral("Estado de las promociones"), QStringLiteral("promociones-estado")},
        };
        for (const Portal& p : portals())
            l.append({QStringLiteral("mas-portales"), kPortalesMenuPrefix + p.address, p.command});
        return l;
    }();
    return items;
}

QString captionOf(const QString& command)
{
    for (const RibbonItem& i : ribbonItems())
        if (i.command == command)
            return i.caption;
    for (const RibbonMenuItem& m : ribbonMenuItems())
        if (m.command == command)
            return m.caption;
    if (command == QLatin1String("escanear"))
        return QStringLiteral("Escanear documentación");
    return command;
}

} // namespace tv::shell
