#pragma once

#include <QString>
#include <QVariant>

#include <functional>

class QWidget;

namespace tv::registro {

// Screens one register opens on a record of another (an owner from a
// property, a property's interested clients): each library registers the
// screens it owns, so the property register names none of them directly.
using AbrirEnlace = std::function<void(QWidget* parent, const QVariant& clave)>;
void registrarEnlace(const QString& id, AbrirEnlace abrir);
bool hayEnlace(const QString& id);
// False when no library offers the screen.
bool abrirEnlace(const QString& id, QWidget* parent, const QVariant& clave);

// What a screen says of a linked screen that is not part of this version.
QString textoPendiente(const QString& titulo);

} // namespace tv::registro
