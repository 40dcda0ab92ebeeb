#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

namespace tv::ui {

// An icon by its freedesktop name: the desktop theme's (Adwaita on this
// platform, colour or "-symbolic"), else the program's own drawing bundled
// as ":/bmp/<name>.svg", else the bundled generic sheet.
QIcon themeIcon(const QString& name);

// The same icon recoloured in one colour (for the monochrome symbolic set),
// drawn at the given size.
QIcon tintedIcon(const QString& name, const QColor& color, int size);

// Makes sure a theme is searched even where no desktop session chose one
// (a bare X server, offscreen tests).
void ensureIconTheme();

} // namespace tv::ui
