#include "icons.h"

#include <QDir>
#include <QHash>
#include <QFileInfo>
#include <QPainter>
#include <QPixmap>

namespace tv::ui {

void ensureIconTheme()
{
    static bool done = false;
    if (done)
        return;
    done = true;
    // Platforms without a desktop theme plug-in (offscreen, a bare X server)
    // do not look in the XDG data folders; add them.
    QStringList paths = QIcon::themeSearchPaths();
    QStringList dataDirs = qEnvironmentVariable("XDG_DATA_DIRS").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    if (dataDirs.isEmpty())
        dataDirs = {QStringLiteral("/usr/local/share"), QStringLiteral("/usr/share")};
    dataDirs.prepend(QDir::homePath() + QStringLiteral("/.local/share"));
    for (const QString& d : dataDirs) {
        const QString icons = d + QStringLiteral("/icons");
        if (!paths.contains(icons) && QFileInfo(icons).isDir())
            paths.append(icons);
    }
    QIcon::setThemeSearchPaths(paths);
    const QString current = QIcon::themeName();
    if (!current.isEmpty() && current != QLatin1String("hicolor"))
        return;
    for (const QString& dir : paths) {
        if (QFileInfo::exists(dir + QStringLiteral("/Adwaita/index.theme"))) {
            QIcon::setThemeName(QStringLiteral("Adwaita"));
            return;
        }
    }
}

namespace {

// The theme's scalable drawing of an icon, when it has one: it renders
// sharp at any size, where the fixed-size bitmaps would come out small.
QString scalableFile(const QString& name)
{
    static QHash<QString, QString> cache;
    if (const auto it = cache.constFind(name); it != cache.constEnd())
        return it.value();
    QString found;
    const QString theme = QIcon::themeName();
    for (const QString& base : QIcon::themeSearchPaths()) {
        const QDir scalable(base + QLatin1Char('/') + theme + QStringLiteral("/scalable"));
        if (!scalable.exists())
            continue;
        for (const QString& context : scalable.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            for (const QString& file : {name + QStringLiteral(".svg"), name + QStringLiteral("-symbolic.svg")}) {
                const QString path = scalable.filePath(context + QLatin1Char('/') + file);
                if (QFileInfo::exists(path)) {
                    found = path;
                    break;
                }
            }
            if (!found.isEmpty())
                break;
        }
        if (!found.isEmpty())
            break;
    }
    cache.insert(name, found);
    return found;
}

} // namespace

QIcon themeIcon(const QString& name)
{
    ensureIconTheme();
    if (name.isEmpty())
        return {};
    if (const QString svg = scalableFile(name); !svg.isEmpty())
        return QIcon(svg);
    const QString bundled = QStringLiteral(":/bmp/%1.svg").arg(name);
    // The program's own drawings come first for names that only it has.
    if (QFileInfo::exists(bundled) && !QIcon::hasThemeIcon(name) &&
        !QIcon::hasThemeIcon(name + QStringLiteral("-symbolic")))
        return QIcon(bundled);
    QIcon icon = QIcon::fromTheme(name);
    if (icon.isNull())
        icon = QIcon::fromTheme(name + QStringLiteral("-symbolic"));
    if (icon.isNull() && QFileInfo::exists(bundled))
        icon = QIcon(bundled);
    if (icon.isNull())
        icon = QIcon(QStringLiteral(":/bmp/generico.svg"));
    return icon;
}

QIcon tintedIcon(const QString& name, const QColor& color, int size)
{
    const QIcon base = themeIcon(name);
    if (base.isNull())
        return {};
    QIcon out;
    for (const int scale : {1, 2}) {
        QPixmap pm = base.pixmap(QSize(size, size) * scale);
        if (pm.isNull())
            continue;
        QPainter p(&pm);
        p.setCompositionMode(QPainter::CompositionMode_SourceIn);
        p.fillRect(pm.rect(), color);
        p.end();
        pm.setDevicePixelRatio(scale);
        out.addPixmap(pm);
    }
    return out;
}

} // namespace tv::ui
