#pragma once

#include <QByteArray>
#include <QImage>
#include <QLabel>
#include <QString>

namespace tv {
class Tdm;
}

namespace tv::registro {

// The property screen's picture box: the main (first) photograph of a
// property, scaled to fit and redrawn when the box changes size. With no
// photograph, or an empty or unreadable picture, the box hides itself.
// Interface thread only.
class FotoPrincipal : public QLabel {
    Q_OBJECT
public:
    explicit FotoPrincipal(QWidget* parent = nullptr);

    // Reads the property's main photograph; DatabaseError when the images
    // database cannot be read (the box is then hidden).
    void mostrar(Tdm& datos, const QString& codigoInmueble);
    // Shows a picture's bytes (empty: hides the box).
    void mostrarImagen(const QByteArray& bytes);
    void limpiar() { mostrarImagen({}); }

    bool tieneFoto() const { return !mImagen.isNull(); }
    QImage imagen() const { return mImagen; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void dibujar();

    QImage mImagen;
};

} // namespace tv::registro
