#include "fotoprincipal.h"

#include "fotos.h"

#include <QPixmap>
#include <QResizeEvent>

namespace tv::registro {

FotoPrincipal::FotoPrincipal(QWidget* parent) : QLabel(parent)
{
    setObjectName(QStringLiteral("FotoPrincipal"));
    setAlignment(Qt::AlignCenter);
    setFrameShape(QFrame::StyledPanel);
    setMinimumSize(160, 120);
    // The picture follows the box; it must not make the box grow.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    setToolTip(QStringLiteral("Fotografía principal del inmueble"));
    hide();
}

void FotoPrincipal::mostrar(Tdm& datos, const QString& codigoInmueble)
{
    try {
        mostrarImagen(fotoPrincipal(datos, codigoInmueble));
    } catch (...) {
        limpiar();
        throw;
    }
}

void FotoPrincipal::mostrarImagen(const QByteArray& bytes)
{
    mImagen = decodificarFoto(bytes);
    dibujar();
    setVisible(!mImagen.isNull());
}

void FotoPrincipal::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    if (event->size() != event->oldSize())
        dibujar();
}

void FotoPrincipal::dibujar()
{
    if (mImagen.isNull()) {
        clear();
        return;
    }
    const QSize sitio = contentsRect().size().expandedTo(QSize(1, 1));
    setPixmap(QPixmap::fromImage(mImagen.scaled(sitio, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
}

} // namespace tv::registro
